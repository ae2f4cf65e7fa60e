// Replays inputs through a fuzz target without the fuzzer: files, or all files of folders. Usage: TARGET
// PATH...

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

namespace {

int g_inputs = 0;

void Replay(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(file), {}};
    LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size());
    ++g_inputs;
}

} // namespace

int main(int argc, char** argv)
{
    for (int i = 1; i < argc; ++i) {
        if (std::filesystem::is_directory(argv[i])) {
            for (const auto& entry : std::filesystem::directory_iterator(argv[i])) {
                Replay(entry.path());
            }
        } else {
            Replay(argv[i]);
        }
    }
    printf("%d inputs replayed\n", g_inputs);
    return g_inputs > 0 ? 0 : 1;
}
