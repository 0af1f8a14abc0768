// Runs a fuzz target over files instead of generated input, so the committed corpus replays as an
// ordinary test in a build without libFuzzer. Arguments are files or folders of files.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
/// Optional in a target, as in libFuzzer: one-time set-up that is not timed as part of an input.
extern "C" __attribute__((weak)) int LLVMFuzzerInitialize(int* argc, char*** argv);

namespace {

std::string contents(const std::filesystem::path& file) {
    std::ifstream in(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

std::vector<std::filesystem::path> inputs(int argc, char** argv) {
    std::vector<std::filesystem::path> files;
    for (int i = 1; i < argc; ++i) {
        const std::filesystem::path argument(argv[i]);
        if (!std::filesystem::is_directory(argument)) {
            files.push_back(argument);
            continue;
        }
        for (const auto& entry : std::filesystem::directory_iterator(argument))
            if (entry.is_regular_file())
                files.push_back(entry.path());
    }
    return files;
}

} // namespace

int main(int argc, char** argv) {
    if (LLVMFuzzerInitialize)
        LLVMFuzzerInitialize(&argc, &argv);
    const auto files = inputs(argc, argv);
    if (files.empty()) {
        std::fprintf(stderr, "no corpus files given\n");
        return 1;
    }
    for (const auto& file : files) {
        const std::string bytes = contents(file);
        // Printed first so that a crash names the input that caused it.
        std::fprintf(stderr, "%s\n", file.filename().c_str());
        LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
    }
    std::printf("replayed %zu inputs\n", files.size());
    return 0;
}
