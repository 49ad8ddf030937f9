// Writes the inputs of the zo end-to-end test, the same bytes on every run:
//   zo-tool-testdata bytes FILE SIZE          text-like runs mixed with noise, SIZE bytes
//   zo-tool-testdata field FILE WIDTH HEIGHT  a smooth float32 field (little-endian), a row at a time
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <random>
#include <string>
#include <vector>

int main(int argc, char** argv)
{
    if (argc < 4) {
        std::fprintf(stderr, "usage: zo-tool-testdata bytes FILE SIZE | field FILE WIDTH HEIGHT\n");
        return 2;
    }
    const std::string kind = argv[1];
    std::FILE* out = std::fopen(argv[2], "wb");
    if (out == nullptr)
        return 1;
    std::mt19937 random(15);
    std::vector<unsigned char> bytes;
    if (kind == "bytes") {
        const size_t size = std::strtoull(argv[3], nullptr, 10);
        static const char words[] = "archive stream graph node float zo header ";
        while (bytes.size() < size) {
            // Alternating compressible text and incompressible noise, so both deflate paths run.
            const size_t run = 1 + random() % 4096;
            const bool noise = random() % 3 == 0;
            for (size_t i = 0; i < run && bytes.size() < size; ++i)
                bytes.push_back(noise ? static_cast<unsigned char>(random()) : words[(i + run) % (sizeof(words) - 1)]);
        }
    } else if (kind == "field" && argc == 5) {
        const int width = std::atoi(argv[3]);
        const int height = std::atoi(argv[4]);
        for (int y = 0; y < height; ++y) {
            for (int x = 0; x < width; ++x) {
                const float value = static_cast<float>(100.0 * std::sin(x * 0.01) * std::cos(y * 0.013) + 0.002 * x * y);
                unsigned char little[4];
                uint32_t bits = 0;
                std::memcpy(&bits, &value, 4);
                for (int i = 0; i < 4; ++i)
                    little[i] = static_cast<unsigned char>(bits >> (8 * i));
                bytes.insert(bytes.end(), little, little + 4);
            }
        }
    } else {
        std::fclose(out);
        return 2;
    }
    const bool written = std::fwrite(bytes.data(), 1, bytes.size(), out) == bytes.size();
    return std::fclose(out) == 0 && written ? 0 : 1;
}
