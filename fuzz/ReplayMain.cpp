// Where libFuzzer is not at hand, a target is this program: it runs the inputs it is given
// (files, or every file of a folder) once each, so that a seed corpus and the inputs that
// once failed stay tests in any build.

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);

namespace {

void runFile(const std::filesystem::path &path)
{
    std::ifstream in(path, std::ios::binary);
    const std::vector<uint8_t> bytes{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
}

} // namespace

int main(int argc, char **argv)
{
    namespace fs = std::filesystem;
    int count = 0;
    for (int i = 1; i < argc; ++i) {
        const fs::path arg(argv[i]);
        if (fs::is_directory(arg)) {
            std::vector<fs::path> files;
            for (const auto &entry : fs::directory_iterator(arg))
                if (entry.is_regular_file())
                    files.push_back(entry.path());
            std::sort(files.begin(), files.end());
            for (const auto &file : files) {
                runFile(file);
                ++count;
            }
        } else if (fs::is_regular_file(arg)) {
            runFile(arg);
            ++count;
        } else {
            std::fprintf(stderr, "no such input: %s\n", argv[i]);
            return 1;
        }
    }
    std::printf("%d inputs ran\n", count);
    return 0;
}
