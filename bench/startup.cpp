// SPDX-License-Identifier: MIT
//
// usage: bench_startup LIBRARY YARDSTICK
//
// The cost of loading the library, compared with a library that only uses the C++ standard library:
// size, processor time of dlopen and dlclose in new processes (medians), allocations while loading.
// The exit status is 1 when the library allocates more than the standard library and the loader do.
//
// This program counts the calls of its own malloc. It does not use the C++ standard library, which
// the measured library must be the first to load.
#include <initializer_list> // of ranges; no code comes with it

#include <dlfcn.h>
#include <stdio.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

extern "C" {
// NOLINTBEGIN(bugprone-reserved-identifier): glibc's own names of what is replaced below
void* __libc_malloc(size_t size);
void* __libc_calloc(size_t count, size_t size);
void* __libc_realloc(void* block, size_t size);
void* __libc_memalign(size_t alignment, size_t size);
// NOLINTEND(bugprone-reserved-identifier)
}

namespace {

struct Figures {
    long load; // nanoseconds
    long unload;
    long blocks;
    long bytes;
};

struct Library {
    const char* path;
    long size;
    Figures runs[301];
    Figures median;
};
constexpr int RUNS = sizeof Library::runs / sizeof(Figures);

long allocatedBlocks = 0;
long allocatedBytes = 0;

void count(size_t size) {
    ++allocatedBlocks;
    allocatedBytes += static_cast<long>(size);
}

[[noreturn]] void fail(const char* what) {
    fprintf(stderr, "bench_startup: %s\n", what);
    exit(2);
}

long now() {
    timespec time = {};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return 1'000'000'000 * time.tv_sec + time.tv_nsec;
}

Figures loadHere(const char* path) {
    if (dlopen("libstdc++.so.6", RTLD_NOW | RTLD_NOLOAD) != nullptr)
        fail("the standard library is loaded already");
    Figures figures = {};
    allocatedBlocks = 0;
    allocatedBytes = 0;
    const long begin = now();
    void* const library = dlopen(path, RTLD_NOW | RTLD_LOCAL);
    figures.load = now() - begin;
    figures.blocks = allocatedBlocks;
    figures.bytes = allocatedBytes;
    if (library == nullptr)
        fail(dlerror());
    const long end = now();
    dlclose(library);
    figures.unload = now() - end;
    return figures;
}

/// Loads in a new process.
Figures loadInProcess(const char* path) {
    int ends[2];
    if (pipe(ends) != 0)
        fail("no pipe");
    Figures figures = {};
    const pid_t process = fork();
    if (process == 0) {
        figures = loadHere(path);
        _exit(write(ends[1], &figures, sizeof figures) == sizeof figures ? 0 : 1);
    }
    close(ends[1]);
    const bool received = read(ends[0], &figures, sizeof figures) == sizeof figures;
    close(ends[0]);
    if (process < 0 || waitpid(process, nullptr, 0) != process || !received)
        fail("a process failed");
    return figures;
}

long medianOf(const Library& library, long Figures::* figure) {
    long sorted[RUNS];
    for (int i = 0; i < RUNS; ++i)
        sorted[i] = library.runs[i].*figure;
    qsort(sorted, RUNS, sizeof *sorted, [](const void* a, const void* b) {
        const long left = *static_cast<const long*>(a);
        const long right = *static_cast<const long*>(b);
        return static_cast<int>(left > right) - static_cast<int>(left < right);
    });
    return sorted[RUNS / 2];
}

void measure(Library& own, Library& yardstick) {
    for (int i = 0; i < RUNS; ++i)
        for (Library* library : {&own, &yardstick})
            library->runs[i] = loadInProcess(library->path);
    for (Library* library : {&own, &yardstick}) {
        struct stat file = {};
        if (stat(library->path, &file) != 0)
            fail(library->path);
        library->size = file.st_size;
        library->median = {medianOf(*library, &Figures::load), medianOf(*library, &Figures::unload),
                           medianOf(*library, &Figures::blocks),
                           medianOf(*library, &Figures::bytes)};
    }
}

void line(const char* what, long own, long yardstick) {
    printf("| %-27s | %9ld | %23ld |\n", what, own, yardstick);
}

Library own;
Library yardstick;

} // namespace

extern "C" {

void* malloc(size_t size) {
    count(size);
    return __libc_malloc(size);
}
void* calloc(size_t number, size_t size) {
    count(number * size);
    return __libc_calloc(number, size);
}
void* realloc(void* block, size_t size) {
    count(size);
    return __libc_realloc(block, size);
}
void* aligned_alloc(size_t alignment, size_t size) {
    count(size);
    return __libc_memalign(alignment, size);
}
void* memalign(size_t alignment, size_t size) {
    return aligned_alloc(alignment, size);
}

} // extern "C"

int main(int argc, char** argv) {
    if (argc != 3)
        fail("usage: bench_startup LIBRARY YARDSTICK");
    own.path = argv[1];
    yardstick.path = argv[2];
    measure(own, yardstick);
    printf("\n## startup\n\n");
    printf("| %-27s | %9s | %23s |\n", "what", "KelUtil", "the standard library");
    printf("|-----------------------------|-----------|-------------------------|\n");
    line("stripped library, bytes", own.size, yardstick.size);
    line("load, microseconds", own.median.load / 1000, yardstick.median.load / 1000);
    line("unload, microseconds", own.median.unload / 1000, yardstick.median.unload / 1000);
    line("allocations while loading", own.median.blocks, yardstick.median.blocks);
    line("bytes of them", own.median.bytes, yardstick.median.bytes);
    if (own.median.blocks <= yardstick.median.blocks)
        return 0;
    printf("\nThe library allocates while it is loaded.\n");
    return 1;
}
