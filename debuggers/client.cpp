// SPDX-License-Identifier: MIT
//
// Makes the objects that the test of the views prints. GDB stops in inspect().
#include "KelRT/Kel_ByteBuffer.h"
#include "KelRT/Kel_Number.h"
#include "KelRT/Kel_StrTok.h"

#include <cstdint>
#include <string>

using namespace KelRT;

namespace {

struct Scene {
    Kel_ByteBuffer empty;
    Kel_ByteBuffer scan;
    Kel_ByteBuffer shifted;
    Kel_ByteBuffer large{1000, 1, 0};
    Kel_Number sample{12};
    Kel_Number positive{64};
    Kel_Number bit{1};
    Kel_Number wide{130};
    Kel_Number widest{20000};
    Kel_StrTok columns{"a,\"b,c\",", Kel_StrTok::CSV_DELIM, true, false, true};
    Kel_StrTok words{"one two", " ", true, false, false};
    Kel_StrTok spent{"x,", Kel_StrTok::CSV_DELIM, false, false, false};
};

void inspect([[maybe_unused]] Scene& scene) {}

} // namespace

int main() {
    const unsigned char bytes[] = {0x21, 0x43, 0x65};
    Scene scene;
    scene.scan = Kel_ByteBuffer(bytes, sizeof bytes, 2, 1);
    scene.shifted = scene.scan;
    scene.shifted.shiftBitsDown(12);
    for (std::int32_t i = 0; i < 1000; ++i)
        scene.large[i] = static_cast<char>(i);
    scene.large.shiftBitsDown(4);
    scene.sample.set('x', "FFE");
    scene.positive.set('x', "123456789ABCDEF");
    scene.bit.set('b', "1");
    scene.wide.set('d', "-1");
    scene.widest.set('d', "1" + std::string(5000, '0'));
    scene.columns.getNext();
    scene.words.getNext();
    scene.spent.getNext();
    inspect(scene);
}
