#ifndef IMODELSTAGE_TESTS_FRAME_TEST_SUPPORT_H
#define IMODELSTAGE_TESTS_FRAME_TEST_SUPPORT_H

#include <cstdint>
#include <cstring>
#include <string>

// Expected bytes, spelled out from the encoding: little-endian, int and
// long 32 bits, double binary64, string as its int length then its bytes.
inline std::string i32(std::uint32_t v)
{
    return {char(v), char(v >> 8), char(v >> 16), char(v >> 24)};
}
inline std::string f64(double d)
{
    std::uint64_t bits;
    std::memcpy(&bits, &d, sizeof bits);
    return i32(std::uint32_t(bits)) + i32(std::uint32_t(bits >> 32));
}
inline std::string str(std::string const& s) { return i32(std::uint32_t(s.size())) + s; }

// Registries live as long as the process: a name that no earlier
// repetition of a test has taken, so that --gtest_repeat passes.
inline std::string freshName(std::string const& base)
{
    static int taken = 0;
    return base + std::to_string(++taken);
}

#endif
