// Scanning a directory of 100,000 entries beside a bare readdir loop, and attributes beside the
// host's calls. The folder is the bench's own, below $TMPDIR or /tmp.

#include <plinth.h>

#include <benchmark/benchmark.h>

#include <Directory.h>
#include <Entry.h>
#include <Node.h>
#include <TypeConstants.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

#include <dirent.h>
#include <fcntl.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace {

const int kEntries = 100000;

std::filesystem::path sFolder;

void make_folder()
{
    sFolder = std::filesystem::temp_directory_path() / "plinth-bench-XXXXXX";
    std::string name = sFolder.string();
    sFolder = mkdtemp(name.data());
    for (int i = 0; i < kEntries; i++) {
        char leaf[64];
        snprintf(leaf, sizeof(leaf), "%s/entry number %06d", name.c_str(), i);
        close(open(leaf, O_CREAT | O_WRONLY | O_CLOEXEC, 0644));
    }
}

void report(benchmark::State& state, int64_t entries)
{
    if (entries != kEntries)
        state.SkipWithError("entries are missing");
    state.SetItemsProcessed(state.iterations() * kEntries);
}

void scan_bare(benchmark::State& state)
{
    int64_t entries = 0;
    for (auto _ : state) {
        entries = 0;
        DIR* folder = opendir(sFolder.c_str());
        while (const struct dirent* entry = readdir(folder)) {
            benchmark::DoNotOptimize(entry->d_name[0]);
            entries += entry->d_name[0] != '.';
        }
        closedir(folder);
    }
    report(state, entries);
}

void scan_entries(benchmark::State& state)
{
    int64_t entries = 0;
    for (auto _ : state) {
        entries = 0;
        for (char* name = FindFirstEntry(sFolder.c_str()); *name != '\0'; name = FindNextEntry())
            entries++;
    }
    report(state, entries);
}

void scan_refs(benchmark::State& state)
{
    int64_t entries = 0;
    for (auto _ : state) {
        BDirectory folder(sFolder.c_str());
        entry_ref ref;
        for (entries = 0; folder.GetNextRef(&ref) == B_OK; entries++) {
        }
    }
    report(state, entries);
}

void attribute_bare(benchmark::State& state)
{
    const std::string path = sFolder / "entry number 000000";
    char value[64];
    for (auto _ : state) {
        setxattr(path.c_str(), "user.note", "some text", 9, 0);
        benchmark::DoNotOptimize(getxattr(path.c_str(), "user.note", value, sizeof(value)));
    }
}

void attribute_node(benchmark::State& state)
{
    BNode node((sFolder / "entry number 000000").c_str());
    char value[64];
    for (auto _ : state) {
        node.WriteAttr("note", B_STRING_TYPE, 0, "some text", 10);
        benchmark::DoNotOptimize(node.ReadAttr("note", B_STRING_TYPE, 0, value, sizeof(value)));
    }
}

}  // namespace

BENCHMARK(scan_bare)->Unit(benchmark::kMillisecond);
BENCHMARK(scan_entries)->Unit(benchmark::kMillisecond);
BENCHMARK(scan_refs)->Unit(benchmark::kMillisecond);
BENCHMARK(attribute_bare);
BENCHMARK(attribute_node);

int main(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    make_folder();
    benchmark::RunSpecifiedBenchmarks();
    std::filesystem::remove_all(sFolder);
    return 0;
}
