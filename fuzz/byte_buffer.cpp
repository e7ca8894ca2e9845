// SPDX-License-Identifier: MIT
//
// A program of buffer operations, beside the bit-by-bit model.
#include "input.h"
#include "models/byte_buffer_program.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::Input input(data, size);
    model::ByteBufferProgram program;
    while (!input.empty()) {
        fuzz::require(program.step(input), "buffer and model read the same");
        fuzz::require(input.below(3) != 0 || program.same(), "buffer and model hold the same");
    }
    fuzz::require(program.same(), "buffer and model end the same");
    return 0;
}
