# SPDX-License-Identifier: MIT
"""Views of the library's objects in GDB, which loads this file with the library.

    (gdb) print scan
    $1 = Kel_ByteBuffer of 2 bytes = {bytes = 43 65, pendingBitShift = 4, aligned = 54 06,
      padLow = 3, padHigh = 1}
    (gdb) print sample
    $2 = Kel_Number of 12 bits = {hex = 0xFFE, signed = -2}
    (gdb) print columns
    $3 = Kel_StrTok in comma-separated mode = {rest = "b,c", position = 2, length = 5,
      delimiters = ","}

"print/r" shows the plain fields. Only the client needs debug information (Clang:
-fstandalone-debug). An object that is not constructed yet shows as "not initialised" if its
fields contradict each other.
"""
import gdb
import gdb.printing


def owned(value):
    """Returns the pointer that a std::unique_ptr owns, or the pointer to the first element of a std::vector.

    The pointer's field has another name in each standard library, but it is always the first pointer in the object."""
    kind = value.type.strip_typedefs()
    if kind.code == gdb.TYPE_CODE_PTR:
        return value
    # Skips the bases of a vector in the debug mode of libstdc++: they hold pointers to iterators.
    if kind.code == gdb.TYPE_CODE_STRUCT and not (kind.name or "").startswith("__gnu_debug::"):
        for field in kind.fields():
            found = owned(value[field]) if hasattr(field, "bitpos") else None  # static fields have no bitpos
            if found is not None:
                return found
    return None


def shown(count):
    """Returns how many of COUNT elements to show, limited by "set print elements"."""
    limit = gdb.parameter("print elements")
    return min(count, limit) if limit else count


def plural(count, what):
    return "%d %s%s" % (count, what, "" if count == 1 else "s")


class ByteBuffer:
    """Shows the used bytes from byte 0 on, the sizes of the reserves and the pending shift."""

    def __init__(self, value):
        self.start, self.shift, self.size, self.low, self.high = (
            int(value[name])
            for name in ("startPosition", "pendingBitShift", "size", "padLow", "padHigh"))
        self.storage = owned(value["storage"])

    def initialised(self):
        return self.start == self.low and 0 <= self.shift < 8

    def to_string(self):
        if not self.initialised():
            return "Kel_ByteBuffer, not initialised"
        return "Kel_ByteBuffer of " + plural(self.size, "byte")

    def read(self, count):
        if count == 0:
            return b""
        first = int(self.storage) + self.start
        return bytes(gdb.selected_inferior().read_memory(first, count))

    def text(self, some):
        return (some.hex(" ").upper() or "none") + (" ..." if len(some) < self.size else "")

    def children(self):
        if not self.initialised():
            return
        count = shown(self.size)
        try:
            yield "bytes", self.text(self.read(count))
            if self.shift != 0:
                # The last byte shown takes its high bits from the next one, if there is one.
                bits = int.from_bytes(self.read(min(count + 1, self.size)), "little") >> self.shift
                aligned = (bits & ((1 << 8 * count) - 1)).to_bytes(count, "little")
                yield "pendingBitShift", self.shift
                yield "aligned", self.text(aligned)
        except gdb.MemoryError:
            yield "bytes", "<not readable>"
        yield "padLow", self.low
        yield "padHigh", self.high


class Number:
    """Shows the whole value, whatever its width."""

    def __init__(self, value):
        self.width = int(value["bitCount"])
        self.count = int(value["wordCount"])
        self.words = owned(value["words"])

    def initialised(self):
        return self.width > 0 and self.count == (self.width + 15) // 16 and int(self.words) != 0

    def to_string(self):
        if not self.initialised():
            return "Kel_Number, not initialised"
        return "Kel_Number of " + plural(self.width, "bit")

    def children(self):
        if not self.initialised():
            return
        try:
            # Reads word by word, since the order of the bytes in a word depends on the host.
            texts = ["%04X" % int(self.words[i]) for i in reversed(range(self.count))]
        except gdb.MemoryError:
            yield "hex", "<not readable>"
            return
        digits = (self.width + 3) // 4
        text = "".join(texts)[-digits:]
        pattern = int(text, 16)
        negative = pattern >> (self.width - 1) & 1
        yield "hex", "0x" + text
        yield "signed", decimal(pattern - (negative << self.width))


def decimal(value):
    """Returns the decimal text of value. Python's str() refuses more than a few thousand digits."""
    if value < 0:
        return "-" + decimal(-value)
    if value < 10**4000:
        return str(value)
    digits = value.bit_length() // 7  # about half of the digits: one takes 3.3 bits
    high, low = divmod(value, 10**digits)
    return decimal(high) + decimal(low).rjust(digits, "0")


class StrTok:
    """Shows the mode and the part of the text that is not split into tokens yet."""

    def __init__(self, value):
        self.position, self.length = int(value["position"]), int(value["length"])
        self.buffer = owned(value["buffer"])
        self.delimiters = value["delimiters"]
        self.quotes, self.keep = bool(value["handleQuotes"]), bool(value["keepQuotes"])
        self.pending = int(value["pendingEmptyToken"])

    def to_string(self):
        try:
            # Reads the exported symbol, which even a stripped library has.
            commas = int(gdb.parse_and_eval("*(char **) &'KelRT::Kel_StrTok::CSV_DELIM'"))
        except gdb.error:
            return "Kel_StrTok"
        mode = "comma-separated" if int(self.delimiters) == commas else "skipping"
        return "Kel_StrTok in %s mode" % mode

    def children(self):
        if self.position < self.length:
            yield "rest", (self.buffer + self.position).lazy_string(
                length=self.length - self.position)
        else:
            yield "rest", '""'
        if self.pending != 0:
            yield "pendingEmptyToken", self.pending
        yield "position", self.position
        yield "length", self.length
        yield "delimiters", self.delimiters.lazy_string() if self.delimiters else "none"
        if self.quotes:
            yield "quotes", "kept" if self.keep else "stripped"


def printers():
    collection = gdb.printing.RegexpCollectionPrettyPrinter("libKelUtil")
    for name, view in (("Kel_ByteBuffer", ByteBuffer), ("Kel_Number", Number),
                       ("Kel_StrTok", StrTok)):
        collection.add_printer(name, "^KelRT::%s$" % name, view)
    return collection


gdb.printing.register_pretty_printer(gdb.current_objfile(), printers(), replace=True)
