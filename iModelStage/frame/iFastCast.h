#ifndef IMODELSTAGE_FRAME_IFASTCAST_H
#define IMODELSTAGE_FRAME_IFASTCAST_H

#include <cstddef>
#include <typeinfo>

// dynamic_cast<To*>(from), remembering per dynamic class the answer and
// the distance between the two sides of an object, which is fixed for a
// class and for where `from` lies in it (a class may hold two bases of
// From). A document holds few classes, met again and again, and casts
// across a deep, multiply inherited tree cost more than the rest of many
// hot operations. The last few classes are kept per thread.
template <class To, class From>
To* iFastCast(From* from)
{
    if (!from)
        return nullptr;
    struct Known {
        std::type_info const* type;
        std::ptrdiff_t at;
        std::ptrdiff_t offset;
        bool cast;
    };
    static constexpr unsigned kKnown = 4;
    struct Recent {
        Known known[kKnown];
        unsigned next;
    };
    static thread_local Recent recent = {};
    std::type_info const* type = &typeid(*from);
    // Where from lies in its whole object, read from the object's own
    // type information, without a search.
    char const* whole = static_cast<char const*>(dynamic_cast<void const*>(from));
    std::ptrdiff_t const at = reinterpret_cast<char const*>(from) - whole;
    for (Known const& k : recent.known)
        if (k.type == type && k.at == at)
            return k.cast ? reinterpret_cast<To*>(reinterpret_cast<char*>(from) + k.offset) : nullptr;
    To* to = dynamic_cast<To*>(from);
    std::ptrdiff_t const offset = to ? reinterpret_cast<char*>(to) - reinterpret_cast<char*>(from) : 0;
    recent.known[recent.next++ % kKnown] = Known{type, at, offset, to != nullptr};
    return to;
}

#endif
