// Runs a fuzz target's entry point once on every file given, or on every
// regular file inside the directories given, in name order. Built with the
// normal compiler, so that the corpus is replayed by every test run and a
// fixed crash stays fixed.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <system_error>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size);
extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv) __attribute__((weak));

namespace fs = std::filesystem;

namespace {

bool collect(fs::path const& argument, std::vector<fs::path>& files)
{
    std::error_code error;
    if (fs::is_directory(argument, error)) {
        std::vector<fs::path> found;
        for (fs::directory_entry const& entry : fs::directory_iterator(argument, error))
            if (entry.is_regular_file(error))
                found.push_back(entry.path());
        if (error)
            return false;
        std::sort(found.begin(), found.end());
        files.insert(files.end(), found.begin(), found.end());
        return true;
    }
    if (fs::is_regular_file(argument, error)) {
        files.push_back(argument);
        return true;
    }
    return false;
}

} // namespace

int main(int argc, char** argv)
{
    if (LLVMFuzzerInitialize)
        LLVMFuzzerInitialize(&argc, &argv);
    if (argc < 2) {
        std::fprintf(stderr, "usage: %s <file or directory>...\n", argv[0]);
        return 2;
    }
    std::vector<fs::path> files;
    for (int i = 1; i < argc; ++i) {
        if (!collect(argv[i], files)) {
            std::fprintf(stderr, "%s: cannot read %s\n", argv[0], argv[i]);
            return 2;
        }
    }
    // An empty corpus would make the replay pass without testing anything.
    if (files.empty()) {
        std::fprintf(stderr, "%s: no inputs found\n", argv[0]);
        return 2;
    }
    for (fs::path const& file : files) {
        std::ifstream in(file, std::ios::binary);
        std::vector<char> bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
        if (in.bad()) {
            std::fprintf(stderr, "%s: cannot read %s\n", argv[0], file.c_str());
            return 2;
        }
        std::fprintf(stderr, "replay %s (%zu bytes)\n", file.c_str(), bytes.size());
        // A copy of exactly the input's size, so that a sanitizer sees any
        // read past its end.
        std::vector<std::uint8_t> input(bytes.begin(), bytes.end());
        std::uint8_t* data = input.empty() ? nullptr : input.data();
        LLVMFuzzerTestOneInput(data, input.size());
    }
    std::fprintf(stderr, "replayed %zu inputs\n", files.size());
    return 0;
}
