// SPDX-License-Identifier: MIT
#include "port/file_name.h"

#include <cstdint>
#include <vector>

namespace Port {
namespace {

// Tells what the components of a path are relative to.
enum class Start : std::uint8_t { root, rootOfCurrentDirectory, currentDirectory };

// Holds the parts of a path.
struct SplitPath {
    Start start;
    std::string root; // what ".." cannot remove, such as "C:" of "C:\\a"
    char drive;       // the drive whose current directory is used; 0 for the current drive
    std::string_view components; // everything after the root
};

constexpr bool hasDrives(const Conventions& conventions) {
    return conventions.separator == WINDOWS.separator;
}

// Returns the size in bytes of the character that begins with `first`.
std::size_t characterLength(const Conventions& conventions, char first) {
    return conventions.isLeadByte != nullptr && conventions.isLeadByte(first) ? 2 : 1;
}

constexpr bool isLetter(char character) {
    return (character >= 'A' && character <= 'Z') || (character >= 'a' && character <= 'z');
}

// Removes the first component and its separator from path, and returns the component.
std::string_view takeComponent(const Conventions& conventions, std::string_view& path,
                               std::string_view separators = "/\\") {
    const std::size_t end = findSeparator(conventions, path, separators);
    const std::string_view component = path.substr(0, end);
    path.remove_prefix(end == std::string_view::npos ? path.size() : end + 1);
    return component;
}

// Splits a path that begins with `\\server\share`, or with `\\server` alone.
SplitPath splitShare(std::string_view path, const Conventions& conventions) {
    path.remove_prefix(2);
    std::string root(2, conventions.separator);
    root += takeComponent(conventions, path);
    const std::string_view share = takeComponent(conventions, path);
    if (!share.empty())
        root.append(1, conventions.separator).append(share);
    return {Start::root, root, 0, path};
}

SplitPath splitDrive(std::string_view path) {
    const bool rooted = path.size() > 2 && isSeparator(path[2]);
    return {rooted ? Start::root : Start::currentDirectory, std::string(path.substr(0, 2)), path[0],
            path.substr(2)};
}

SplitPath split(std::string_view path, const Conventions& conventions) {
    if (path.empty())
        return {Start::currentDirectory, {}, 0, path};
    if (hasDrives(conventions)) {
        if (path.size() > 1 && path[1] == ':' && isLetter(path[0]))
            return splitDrive(path);
        if (path.size() > 2 && isSeparator(path[0]) && isSeparator(path[1]) &&
            !isSeparator(path[2]))
            return splitShare(path, conventions);
        if (isSeparator(path[0]))
            return {Start::rootOfCurrentDirectory, {}, 0, path};
    }
    return {isSeparator(path[0]) ? Start::root : Start::currentDirectory, {}, 0, path};
}

using Components = std::vector<std::string_view>;

// Appends the components of path to components and resolves "." and "..".
void appendComponents(Components& components, const Conventions& conventions, std::string_view path,
                      std::string_view separators) {
    while (!path.empty()) {
        const std::string_view component = takeComponent(conventions, path, separators);
        if (component == "..") {
            if (!components.empty())
                components.pop_back();
        } else if (!component.empty() && component != ".") {
            components.push_back(component);
        }
    }
}

std::string compose(const std::string& root, const Components& components, char separator) {
    std::string text = root;
    for (const std::string_view component : components)
        text.append(1, separator).append(component);
    return text;
}

std::string absolutePath(std::string_view path, const Conventions& conventions) {
    SplitPath given = split(path, conventions);
    std::string current;
    Components components;
    if (given.start != Start::root) {
        current = currentDirectory(given.drive);
        if (current.empty())
            return {};
        // On POSIX, the names in the current directory's path may contain '\'.
        const SplitPath base = split(current, conventions);
        if (given.start == Start::currentDirectory)
            appendComponents(components, conventions, base.components,
                             hasDrives(conventions) ? "/\\" : "/");
        given.root = base.root;
    }
    appendComponents(components, conventions, given.components, "/\\");
    std::string text = compose(given.root, components, conventions.separator);
    // A root on its own gets a separator, except the root of a share. Only that root has more than
    // two characters: the others are "" (POSIX) and "C:" (a drive).
    const bool bareRoot = components.empty() && given.root.size() <= 2;
    if (bareRoot || endsInSeparator(conventions, path))
        text += conventions.separator;
    return text;
}

} // namespace

std::size_t findSeparator(const Conventions& conventions, std::string_view path,
                          std::string_view separators) {
    if (conventions.isLeadByte == nullptr)
        return path.find_first_of(separators);
    for (std::size_t at = 0; at < path.size(); at += characterLength(conventions, path[at]))
        if (separators.find(path[at]) != std::string_view::npos)
            return at;
    return std::string_view::npos;
}

bool endsInSeparator(const Conventions& conventions, std::string_view path) {
    if (path.empty() || !isSeparator(path.back()))
        return false;
    std::size_t last = conventions.isLeadByte == nullptr ? path.size() - 1 : 0;
    while (last + 1 < path.size())
        last += characterLength(conventions, path[last]);
    return last + 1 == path.size();
}

std::string join(const Conventions& conventions, std::string_view directory,
                 std::string_view name) {
    std::string path;
    path.reserve(directory.size() + 1 + name.size());
    return path.append(directory).append(1, conventions.separator).append(name);
}

StringBase<char> FileName::GetAbsolutePath(bool /*flag*/) const {
    return StringBase<char>(absolutePath(name, conventions));
}

} // namespace Port
