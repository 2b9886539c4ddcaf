#ifndef IMODELSTAGE_FRAME_SIGSLOT_H
#define IMODELSTAGE_FRAME_SIGSLOT_H

// Signals and receivers.
//
// A signal keeps an ordered list of connections (receiver, member). Emitting
// calls them in connection order under the signal's own recursive lock. A
// receiver (has_slots) remembers which signals point at it, so that either
// side going away ends the connection.
//
// A signal is one pointer. Its list, lock and blocked flag live in a state
// that the first connection creates, so that the many signals of a document
// object that nobody connects cost eight bytes each.
//
// Emission is re-entrant and tolerant of change while it runs: a slot may
// disconnect itself or any other receiver, destroy a receiver, or connect new
// ones. Disconnected links are only marked dead during an emission and swept
// when the outermost emission ends; links made during an emission first fire
// on the next one.

#include <iModelStage/frame/iObjectPool.h>
#include <iModelStage/frame/iPointerCounts.h>

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>
#include <thread>
#include <vector>

namespace sigslot {

// Each signal and each receiver owns its own recursive critical section.
// Emissions and connections happen on the host's user-interface thread, so
// the section is almost never contended: it is an owner and a depth, a few
// bytes instead of a system mutex, and another thread waits by yielding.
class multi_threaded_local {
public:
    multi_threaded_local() = default;
    // A copy gets a lock of its own: locks are never shared.
    multi_threaded_local(multi_threaded_local const&) {}
    multi_threaded_local& operator=(multi_threaded_local const&) { return *this; }
    virtual ~multi_threaded_local() = default;

    virtual void lock()
    {
        std::thread::id const self = std::this_thread::get_id();
        if (m_owner.load(std::memory_order_relaxed) == self) {
            ++m_depth;
            return;
        }
        std::thread::id none;
        while (!m_owner.compare_exchange_weak(none, self, std::memory_order_acquire, std::memory_order_relaxed)) {
            none = std::thread::id();
            std::this_thread::yield();
        }
        m_depth = 1;
    }

    virtual void unlock()
    {
        if (--m_depth == 0)
            m_owner.store(std::thread::id(), std::memory_order_release);
    }

private:
    std::atomic<std::thread::id> m_owner{};
    unsigned m_depth = 0;
};

template <class mt_policy>
class lock_block {
public:
    explicit lock_block(mt_policy* m) : m_mutex(m) { m_mutex->lock(); }
    ~lock_block() { m_mutex->unlock(); }
    lock_block(lock_block const&) = delete;
    lock_block& operator=(lock_block const&) = delete;

private:
    mt_policy* m_mutex;
};

template <class mt_policy>
class has_slots;

template <class mt_policy>
class _signal_base : public mt_policy {
public:
    virtual void slot_disconnect(has_slots<mt_policy>* target) = 0;
    virtual void slot_duplicate(has_slots<mt_policy> const* oldTarget, has_slots<mt_policy>* newTarget) = 0;
};

// Base of every receiver.
template <class mt_policy = multi_threaded_local>
class has_slots : public mt_policy {
    typedef _signal_base<mt_policy> sender_type;

public:
    has_slots() = default;

    // A copy receives what the original receives.
    has_slots(has_slots const& other) : mt_policy(other) { duplicateFrom(other); }

    has_slots(has_slots&& other) : mt_policy(other) { duplicateFrom(other); }

    has_slots& operator=(has_slots const& other)
    {
        if (this != &other) {
            disconnect_all();
            duplicateFrom(other);
        }
        return *this;
    }

    has_slots& operator=(has_slots&& other) { return *this = static_cast<has_slots const&>(other); }

    virtual ~has_slots() { disconnect_all(); }

    // One count per connection: a receiver connected twice to a signal is
    // counted twice, so that one disconnect leaves the other link known.
    void signal_connect(sender_type* sender)
    {
        lock_block<mt_policy> lock(this);
        if (!m_senders)
            m_senders.reset(new iAddressCounts);
        m_senders->add(sender);
    }

    void signal_disconnect(sender_type* sender)
    {
        lock_block<mt_policy> lock(this);
        if (m_senders)
            m_senders->remove(sender);
    }

    void disconnect_all()
    {
        lock_block<mt_policy> lock(this);
        std::unique_ptr<iAddressCounts> senders;
        senders.swap(m_senders);
        if (!senders)
            return;
        senders->forEach([this](void const* sender, int) {
            static_cast<sender_type*>(const_cast<void*>(sender))->slot_disconnect(this);
        });
    }

private:
    void duplicateFrom(has_slots const& other)
    {
        iAddressCounts senders;
        {
            lock_block<mt_policy> lock(const_cast<has_slots*>(&other));
            if (!other.m_senders)
                return;
            senders = *other.m_senders;
        }
        senders.forEach([this, &other](void const* sender, int) {
            static_cast<sender_type*>(const_cast<void*>(sender))->slot_duplicate(&other, this);
        });
    }

    // Made by the first connection: most receivers, document objects
    // among them, never have one, and the table is larger than they are.
    std::unique_ptr<iAddressCounts> m_senders;
};

// The connection list, lock, blocked flag and emission walk of one signal.
// A signal creates its state on first use; receivers know the state as the
// sender. States live in the object pool, beside the objects whose signals
// they serve.
template <class mt_policy, class... Args>
class _signal_state final : public _signal_base<mt_policy> {
    typedef has_slots<mt_policy> receiver_type;

    // A link of the singly linked connection list.
    struct connection {
        virtual ~connection() = default;
        virtual void call(Args... args) const = 0;
        // A copy aimed at target, built in place when place is not null.
        virtual connection* duplicate(receiver_type* target, void* place) const = 0;
        receiver_type* target = nullptr;
        connection* next = nullptr;
        bool alive = true;
    };

    // The receiver's own type is reached only when called: a copied
    // receiver is connected from its base's constructor, before the rest of
    // it exists.
    template <class Receiver>
    struct member_connection : connection {
        typedef void (Receiver::*member_type)(Args...);
        member_connection(receiver_type* target, member_type member) : member(member) { this->target = target; }
        void call(Args... args) const override { (static_cast<Receiver*>(this->target)->*member)(args...); }
        connection* duplicate(receiver_type* target, void* place) const override
        {
            return place ? new (place) member_connection(target, member) : new member_connection(target, member);
        }
        member_type member;
    };

    // The state's own lock, called directly: a state is never a base.
    struct Guard {
        explicit Guard(_signal_state* s) : state(s) { state->mt_policy::lock(); }
        ~Guard() { state->mt_policy::unlock(); }
        Guard(Guard const&) = delete;
        Guard& operator=(Guard const&) = delete;
        _signal_state* state;
    };

    // Room for one connection inside the signal: most signals have one at
    // most, and an object's own connections then need no allocation.
    static constexpr std::size_t inline_size = 48;

public:
    _signal_state() = default;
    _signal_state(_signal_state const&) = delete;
    _signal_state& operator=(_signal_state const&) = delete;
    ~_signal_state() override { disconnect_all(); }

    static void* operator new(std::size_t size) { return iObjectPool::allocate(size); }
    static void operator delete(void* block, std::size_t size) { iObjectPool::deallocate(block, size); }

    // The slot may be declared in a base of the target's class.
    template <class Target, class Receiver>
    void connect(Target* target, void (Receiver::*member)(Args...))
    {
        Receiver* receiver = target;
        Guard lock(this);
        typedef member_connection<Receiver> link;
        static_assert(sizeof(link) <= inline_size && alignof(link) <= alignof(void*),
                      "a connection must fit the signal's own room");
        void* place = inlinePlace();
        append(place ? new (place) link(receiver, member) : new link(receiver, member));
        static_cast<receiver_type*>(receiver)->signal_connect(this);
    }

    // Removes only the first live connection aimed at target.
    void disconnect(receiver_type* target)
    {
        Guard lock(this);
        for (connection *c = m_head, *previous = nullptr; c; previous = c, c = c->next) {
            if (c->alive && c->target == target) {
                drop(c, previous);
                target->signal_disconnect(this);
                return;
            }
        }
    }

    void disconnect_all()
    {
        Guard lock(this);
        connection* previous = nullptr;
        for (connection* c = m_head; c;) {
            connection* next = c->next;
            if (!c->alive) {
                previous = c;
                c = next;
                continue;
            }
            receiver_type* target = c->target;
            if (!drop(c, previous))
                previous = c;
            target->signal_disconnect(this);
            c = next;
        }
    }

    bool blocked() const { return m_blocked; }

    // Sets the flag and returns the previous value, so that a caller can
    // put it back when its scope ends.
    bool block(bool on)
    {
        Guard lock(this);
        bool previous = m_blocked;
        m_blocked = on;
        return previous;
    }

    bool connected() const
    {
        for (connection* c = m_head; c; c = c->next)
            if (c->alive)
                return true;
        return false;
    }

    void operator()(Args... args)
    {
        Guard lock(this);
        if (m_blocked || !m_head)
            return;
        EmissionScope scope(this);
        // Links made by the slots go behind this one and wait for the next
        // emission.
        connection* const last = tail();
        for (connection* c = m_head;;) {
            connection* next = c->next;
            if (c->alive)
                c->call(args...);
            if (c == last)
                break;
            c = next;
        }
    }

    void slot_disconnect(receiver_type* target) override
    {
        Guard lock(this);
        connection* previous = nullptr;
        for (connection* c = m_head; c;) {
            connection* next = c->next;
            bool const kept = !(c->alive && c->target == target) || !drop(c, previous);
            if (kept)
                previous = c;
            c = next;
        }
    }

    void slot_duplicate(receiver_type const* oldTarget, receiver_type* newTarget) override
    {
        Guard lock(this);
        std::vector<connection*> copies;
        for (connection* c = m_head; c; c = c->next)
            if (c->alive && c->target == oldTarget)
                copies.push_back(c->duplicate(newTarget, nullptr));
        for (connection* c : copies) {
            append(c);
            newTarget->signal_connect(this);
        }
    }

private:
    // Keeps the emission depth right even when a slot throws, and sweeps
    // the links that were disconnected while the list was being walked.
    struct EmissionScope {
        explicit EmissionScope(_signal_state* s) : signal(s) { ++signal->m_emitting; }
        ~EmissionScope()
        {
            if (--signal->m_emitting == 0)
                signal->sweep();
        }
        _signal_state* signal;
    };

    // Lists are short: the last link is found by walking, which saves a
    // pointer in every signal state.
    connection* tail() const
    {
        connection* c = m_head;
        while (c && c->next)
            c = c->next;
        return c;
    }

    void append(connection* c)
    {
        if (connection* last = tail())
            last->next = c;
        else
            m_head = c;
    }

    void unlink(connection* c, connection* previous)
    {
        if (previous)
            previous->next = c->next;
        else
            m_head = c->next;
        if (static_cast<void*>(c) == static_cast<void*>(m_inline)) {
            c->~connection();
            m_inlineUsed = false;
        } else {
            delete c;
        }
    }

    void* inlinePlace()
    {
        if (m_inlineUsed)
            return nullptr;
        m_inlineUsed = true;
        return m_inline;
    }

    // While the list is being walked a link is only marked dead; returns
    // whether it was unlinked at once.
    bool drop(connection* c, connection* previous)
    {
        if (m_emitting > 0) {
            c->alive = false;
            return false;
        }
        unlink(c, previous);
        return true;
    }

    void sweep()
    {
        connection* previous = nullptr;
        for (connection* c = m_head; c;) {
            connection* next = c->next;
            if (c->alive)
                previous = c;
            else
                unlink(c, previous);
            c = next;
        }
    }

public:
    // Connections of other aimed also from here.
    void copyConnections(_signal_state const& other)
    {
        Guard lock(this);
        for (connection* c = other.m_head; c; c = c->next) {
            if (!c->alive)
                continue;
            append(c->duplicate(c->target, inlinePlace()));
            c->target->signal_connect(this);
        }
    }

private:
    // The small fields first, where they fill the end of the lock, so that
    // a state with its one connection takes 80 bytes.
    std::int16_t m_emitting = 0;
    bool m_blocked = false;
    bool m_inlineUsed = false;
    alignas(void*) unsigned char m_inline[inline_size];
    connection* m_head = nullptr;
};


// A signal: one pointer, to its state, which the first connection (or a
// lock) creates. A signal nobody connected costs nothing more.
template <class mt_policy, class... Args>
class _signal_impl {
    typedef _signal_state<mt_policy, Args...> state_type;
    typedef has_slots<mt_policy> receiver_type;

public:
    _signal_impl() = default;

    // A copied signal reaches the same receivers.
    _signal_impl(_signal_impl const& other)
    {
        if (state_type* source = other.current())
            state().copyConnections(*source);
    }

    _signal_impl& operator=(_signal_impl const& other)
    {
        if (this != &other) {
            disconnect_all();
            if (state_type* source = other.current())
                state().copyConnections(*source);
        }
        return *this;
    }

    ~_signal_impl() { delete current(); }

    // The slot may be declared in a base of the target's class.
    template <class Target, class Receiver>
    void connect(Target* target, void (Receiver::*member)(Args...))
    {
        state().connect(target, member);
    }

    // Removes only the first live connection aimed at target.
    void disconnect(receiver_type* target)
    {
        if (state_type* s = current())
            s->disconnect(target);
    }

    void disconnect_all()
    {
        if (state_type* s = current())
            s->disconnect_all();
    }

    bool blocked() const
    {
        state_type* s = current();
        return s ? s->blocked() : m_state.load(std::memory_order_acquire) == blockedMark();
    }

    // Sets the flag and returns the previous value, so that a caller can
    // put it back when its scope ends. A signal without a state keeps the
    // flag as a mark in its pointer, so that blocking costs no state.
    bool block(bool on)
    {
        for (;;) {
            state_type* raw = m_state.load(std::memory_order_acquire);
            if (raw && raw != blockedMark())
                return raw->block(on);
            state_type* const wanted = on ? blockedMark() : nullptr;
            if (m_state.compare_exchange_weak(raw, wanted, std::memory_order_acq_rel))
                return raw == blockedMark();
        }
    }

    bool connected() const
    {
        state_type* s = current();
        return s && s->connected();
    }

    void operator()(Args... args)
    {
        if (state_type* s = current())
            (*s)(args...);
    }

    // The signal's own recursive lock.
    void lock() { state().lock(); }
    void unlock() { state().unlock(); }

private:
    // The value of the pointer of a blocked signal without a state.
    static state_type* blockedMark() { return reinterpret_cast<state_type*>(std::uintptr_t(1)); }

    state_type* current() const
    {
        state_type* s = m_state.load(std::memory_order_acquire);
        return s == blockedMark() ? nullptr : s;
    }

    state_type& state()
    {
        if (state_type* s = current())
            return *s;
        state_type* made = new state_type;
        for (;;) {
            state_type* expected = m_state.load(std::memory_order_acquire);
            if (expected && expected != blockedMark()) {
                // Another thread was first.
                delete made;
                return *expected;
            }
            made->block(expected == blockedMark());
            if (m_state.compare_exchange_weak(expected, made, std::memory_order_acq_rel))
                return *made;
        }
    }

    std::atomic<state_type*> m_state{nullptr};
};

template <class mt_policy = multi_threaded_local>
class signal0 : public _signal_impl<mt_policy> {};

template <class A1, class mt_policy = multi_threaded_local>
class signal1 : public _signal_impl<mt_policy, A1> {};

template <class A1, class A2, class mt_policy = multi_threaded_local>
class signal2 : public _signal_impl<mt_policy, A1, A2> {};

template <class A1, class A2, class A3, class mt_policy = multi_threaded_local>
class signal3 : public _signal_impl<mt_policy, A1, A2, A3> {};

template <class A1, class A2, class A3, class A4, class mt_policy = multi_threaded_local>
class signal4 : public _signal_impl<mt_policy, A1, A2, A3, A4> {};

// Blocks a signal and restores what it was, at release() or at the end of
// the scope, whichever comes first.
template <class Signal>
class signal_blocker {
public:
    explicit signal_blocker(Signal& s) : m_signal(s), m_previous(s.block(true)) {}
    ~signal_blocker() { release(); }
    signal_blocker(signal_blocker const&) = delete;
    signal_blocker& operator=(signal_blocker const&) = delete;

    void release()
    {
        if (m_released)
            return;
        m_released = true;
        m_signal.block(m_previous);
    }

private:
    Signal& m_signal;
    bool m_previous;
    bool m_released = false;
};

template <class Signal>
signal_blocker(Signal&) -> signal_blocker<Signal>;

} // namespace sigslot

#endif
