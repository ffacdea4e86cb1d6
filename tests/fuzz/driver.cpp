// Runs a fuzz target without libFuzzer, for a second: random inputs, and random changes of
// those that the target offers as seeds. The inputs depend on nothing but the turn's number.
// Files given as arguments are run instead, each once.

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <random>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

// Inputs worth changing; a target may define its own.
std::vector<std::vector<uint8_t>> FuzzSeeds() __attribute__((weak));

using Bytes = std::vector<uint8_t>;

static void change(Bytes& bytes, std::mt19937& random)
{
    const size_t place = bytes.empty() ? 0 : random() % bytes.size();
    static const uint8_t kOdd[] = {0, 1, 0x7F, 0x80, 0xFF};
    switch (random() % 6) {
        case 0:
            if (!bytes.empty())
                bytes[place] ^= static_cast<uint8_t>(1u << random() % 8);
            break;
        case 1:
            if (!bytes.empty())
                bytes[place] = kOdd[random() % std::size(kOdd)];
            break;
        case 2:
            bytes.resize(place);
            break;
        case 3:
            bytes.insert(bytes.begin() + place, random() % 16 + 1, static_cast<uint8_t>(random()));
            break;
        case 4:
            if (!bytes.empty())
                bytes.erase(bytes.begin() + place);
            break;
        default: {
            const Bytes copy(bytes.begin() + place, bytes.end());
            bytes.insert(bytes.begin() + place, copy.begin(), copy.end());
            if (bytes.size() > 1 << 16)
                bytes.resize(1 << 16);
            break;
        }
    }
}

static Bytes make_input(const std::vector<Bytes>& seeds, std::mt19937& random)
{
    Bytes bytes;
    if (!seeds.empty() && random() % 8 != 0) {
        bytes = seeds[random() % seeds.size()];
        for (unsigned changes = random() % 8; changes > 0; --changes)
            change(bytes, random);
        return bytes;
    }
    bytes.resize(random() % 512);
    for (uint8_t& byte : bytes)
        byte = static_cast<uint8_t>(random());
    return bytes;
}

int main(int argc, char** argv)
{
    for (int i = 1; i < argc; ++i) {
        std::ifstream file(argv[i], std::ios::binary);
        const Bytes bytes{std::istreambuf_iterator<char>(file), {}};
        LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
    }
    if (argc > 1)
        return 0;
    std::vector<Bytes> seeds;
    if (FuzzSeeds != nullptr)
        seeds = FuzzSeeds();
    for (const Bytes& seed : seeds)
        LLVMFuzzerTestOneInput(seed.data(), seed.size());
    using Clock = std::chrono::steady_clock;
    unsigned turn = 0;
    for (const auto end = Clock::now() + std::chrono::seconds(1); Clock::now() < end; ++turn) {
        std::mt19937 random(turn);
        const Bytes bytes = make_input(seeds, random);
        LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
    }
    printf("%u inputs\n", turn);
    return 0;
}
