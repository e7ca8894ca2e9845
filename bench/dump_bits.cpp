// SPDX-License-Identifier: MIT
//
// Measures dumps of buffers in the bit form, which has 10.5 characters per byte. No peer has such a
// form. The ratio to the limit should be the same as for the hexadecimal form, in dumps.cpp.
#include "dumps.h"

using namespace bench;

namespace {

void rows(const LogFile& file, const LogDirectory& directory, const char* size,
          const Bytes& bytes) {
    Row row("dumps", "bits", size, bytes.size());
    row.add("KelUtil", ownDump(file, bytes, 8));
    addLimit(row, directory, ownDump(file, bytes, 8), bytes);
}

} // namespace

int main(int argc, char** argv) {
    static const LogDirectory directory;               // removed even if a check fails
    const LogFile file = startLogging(directory, "3"); // bits, large buffers
    const Bytes small = randomBytes(1 << 20);
    const Bytes large = randomBytes(16 << 20);
    rows(file, directory, "1 MiB", small);
    rows(file, directory, "16 MiB", large);
    return runAll(argc, argv);
}
