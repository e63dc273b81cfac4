// Chooses the mutant while the tests run. Included before everything else in the scratch copy, never in the
// repository's own build.
#pragma once

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>

namespace mutation {

inline int active = 0;                    // number of the mutant, 0: none
inline unsigned char* reached = nullptr;  // one byte by number, while reached mutants are recorded

inline bool On(int number) {
    if (__builtin_expect(reached != nullptr, 0)) {
        reached[number] = 1;
    }
    return __builtin_expect(active == number, 0);
}

// The file has one byte by number. It is shared, so that a process that ends in any way leaves its record.
inline void RecordIn(const char* path) {
    const int file = open(path, O_RDWR);
    struct stat about {};
    if (file < 0 || fstat(file, &about) != 0) {
        abort();
    }
    void* bytes =
        mmap(nullptr, static_cast<std::size_t>(about.st_size), PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
    if (bytes == MAP_FAILED) {
        abort();
    }
    close(file);
    reached = static_cast<unsigned char*>(bytes);
}

// Before the initialisation of any variable of the program: those have mutants too.
__attribute__((constructor(101))) static void Choose() {
    const char* number = std::getenv("MUTANT");
    active = number != nullptr ? std::atoi(number) : 0;
    const char* record = std::getenv("MUTANTS_REACHED");
    if (record != nullptr && reached == nullptr) {
        RecordIn(record);
    }
}

}  // namespace mutation
