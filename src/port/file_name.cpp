// SPDX-License-Identifier: MIT
#include "port/port.h"

namespace Port {
namespace {

/// Where the parts of a path count from.
enum class Start { root, rootOfCurrentDirectory, currentDirectory };

/// A path taken apart at its front.
struct Front {
    Start start;
    std::string root;      ///< what ".." cannot remove, without a separator behind it
    char drive;            ///< whose current directory counts; 0 for the current drive
    std::string_view rest; ///< the parts behind the root
};

constexpr bool hasDrives(const Conventions& conventions) {
    return conventions.separator == WINDOWS.separator;
}

constexpr bool isLetter(char character) {
    return (character >= 'A' && character <= 'Z') || (character >= 'a' && character <= 'z');
}

/// The length of the part at the front of \a text.
std::size_t partLength(std::string_view text) {
    const std::size_t end = text.find_first_of("/\\");
    return end == std::string_view::npos ? text.size() : end;
}

/// `\\server\share` at the front of \a path, which begins with two separators.
Front shareFront(std::string_view path, char separator) {
    std::size_t length = 2 + partLength(path.substr(2));
    if (length < path.size())
        length += 1 + partLength(path.substr(length + 1));
    std::string root(path.substr(0, length));
    for (char& character : root)
        if (isSeparator(character))
            character = separator;
    if (endsInSeparator(root))
        root.pop_back(); // a server without a share
    return {Start::root, root, 0, path.substr(length)};
}

Front driveFront(std::string_view path) {
    const bool rooted = path.size() > 2 && isSeparator(path[2]);
    return {rooted ? Start::root : Start::currentDirectory, std::string(path.substr(0, 2)), path[0],
            path.substr(2)};
}

Front frontOf(std::string_view path, const Conventions& conventions) {
    if (path.empty())
        return {Start::currentDirectory, {}, 0, path};
    if (hasDrives(conventions)) {
        if (path.size() > 1 && path[1] == ':' && isLetter(path[0]))
            return driveFront(path);
        if (path.size() > 2 && isSeparator(path[0]) && isSeparator(path[1]) &&
            !isSeparator(path[2]))
            return shareFront(path, conventions.separator);
        if (isSeparator(path[0]))
            return {Start::rootOfCurrentDirectory, {}, 0, path};
    }
    return {isSeparator(path[0]) ? Start::root : Start::currentDirectory, {}, 0, path};
}

using Parts = std::vector<std::string_view>;

/// Appends the parts of \a path to \a parts, folding "." and "..".
void appendParts(Parts& parts, std::string_view path, const char* separators) {
    while (!path.empty()) {
        const std::size_t end = path.find_first_of(separators);
        const std::string_view part = path.substr(0, end);
        path.remove_prefix(end == std::string_view::npos ? path.size() : end + 1);
        if (part == "..") {
            if (!parts.empty())
                parts.pop_back();
        } else if (!part.empty() && part != ".") {
            parts.push_back(part);
        }
    }
}

/// The current directory that \a front counts from; empty when it cannot be read.
std::string baseOf(const Front& front) {
    std::string base = currentDirectory(front.drive);
    // A drive that has no current directory of its own counts from its root.
    return base.empty() && front.drive != 0 ? front.root + '\\' : base;
}

std::string compose(const std::string& root, const Parts& parts, char separator) {
    std::string text = root;
    for (const std::string_view part : parts)
        text.append(1, separator).append(part);
    return text;
}

std::string absolutePath(std::string_view path, const Conventions& conventions) {
    Front front = frontOf(path, conventions);
    std::string base;
    Parts parts;
    if (front.start != Start::root) {
        base = baseOf(front);
        if (base.empty())
            return {};
        // The host's own text: where only "/" separates, "\" may be a character of a name.
        const Front baseFront = frontOf(base, conventions);
        if (front.start == Start::currentDirectory)
            appendParts(parts, baseFront.rest, hasDrives(conventions) ? "/\\" : "/");
        front.root = baseFront.root;
    }
    appendParts(parts, front.rest, "/\\");
    std::string text = compose(front.root, parts, conventions.separator);
    const bool bareRoot = parts.empty() && front.root.size() <= 2; // "/" and "C:\"
    if (bareRoot || endsInSeparator(path))
        text += conventions.separator;
    return text;
}

} // namespace

std::string join(const Conventions& conventions, std::string_view directory,
                 std::string_view name) {
    std::string path;
    path.reserve(directory.size() + 1 + name.size());
    return path.append(directory).append(1, conventions.separator).append(name);
}

StringBase<char> FileName::GetAbsolutePath(bool /*flag*/) const {
    return StringBase<char>(absolutePath(name, rules));
}

} // namespace Port
