// SPDX-License-Identifier: MIT
#include "output.h"

#include "host.h"
#include "messages.h"

#include "KelRT/Kel_Util.h"

#include <cerrno>
#include <cstdio>
#include <iostream>

namespace field_report {

using KelRT::Kel_Util;

namespace {

// Finds an unused name in the directory of `path`. The report has this name until it is complete.
std::string unusedNameBeside(const std::string& path) {
    for (unsigned number = 0;; ++number) {
        std::string name = path + ".part" + std::to_string(number);
        if (!std::ifstream(name))
            return name;
    }
}

Fault cannotWrite(const std::string& path) {
    return hostFault("the report cannot be written" + (path.empty() ? "" : " to " + path));
}

} // namespace

Output::Output(const std::string& where, bool binary)
    : path(where), isTemporary(Kel_Util::stricmp(where, "temp") == 0), target(&std::cout) {
    if (path.empty()) {
        if (binary)
            host::setBinaryMode(stdout);
        return;
    }
    if (isTemporary)
        path = Kel_Util::createDotLumatraceTempFile("field_report");
    const bool direct = isTemporary || !host::mayReplace(path);
    if (!direct)
        path = host::linkTarget(path);
    const std::string name = direct ? path : unusedNameBeside(path);
    errno = 0;
    file.open(name, binary ? std::ios::out | std::ios::binary : std::ios::out);
    if (!file)
        throw cannotWrite(path);
    if (!direct)
        host::copyPermissions(path, name);
    if (isTemporary || !direct)
        unfinished = name;
    target = &file;
}

Output::~Output() {
    if (unfinished.empty())
        return;
    file.close();
    static_cast<void>(std::remove(unfinished.c_str()));
}

void Output::write(const std::string& text) {
    errno = 0;
    target->write(text.data(), static_cast<std::streamsize>(text.size()));
    if (!target->flush())
        throw cannotWrite(path);
}

void Output::finish() {
    errno = 0;
    if (file.is_open())
        file.close();
    if (!*target ||
        (!unfinished.empty() && unfinished != path && !host::replaceFile(unfinished, path)))
        throw cannotWrite(path);
    unfinished.clear();
    if (isTemporary && !(std::cout << "report written to " << path << '\n').flush())
        throw cannotWrite("");
}

} // namespace field_report
