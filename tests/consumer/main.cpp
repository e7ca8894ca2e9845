// SPDX-License-Identifier: MIT
#include "KelRT/Kel_ByteBuffer.h"
#include "KelRT/Kel_Exception.h"
#include "KelRT/Kel_Util.h"

#include <iostream>

int main() {
    KelRT::Kel_ByteBuffer scan(4, 0, 0);
    scan.setBits(4, 12, 0xABC);
    const std::unique_ptr<KelRT::Kel_ByteBuffer> text(scan.bin2HexString(0));
    std::cout << text->ptr() << '\n';
    try {
        std::vector<std::string> names;
        KelRT::Kel_Util::getDirectoryFileList("absent", false, names);
    } catch (const KelRT::Kel_Exception& error) {
        std::cout << error.what();
    }
}
