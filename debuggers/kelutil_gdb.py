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

"print/r" shows the plain fields. The debug information of the client is enough (of Clang, with
-fstandalone-debug); the library needs none. An object that is not constructed yet shows as "not initialised", where that can be told.
"""
import gdb
import gdb.printing


def owned(value):
    """The pointer in a std::unique_ptr, or the one to the first element of a std::vector.

    It is the first pointer in them, whatever the standard library calls it."""
    kind = value.type.strip_typedefs()
    if kind.code == gdb.TYPE_CODE_PTR:
        return value
    # In the debug mode of libstdc++, bases of a vector hold pointers to its iterators.
    if kind.code == gdb.TYPE_CODE_STRUCT and not (kind.name or "").startswith("__gnu_debug::"):
        for field in kind.fields():
            found = owned(value[field]) if hasattr(field, "bitpos") else None  # static: no place
            if found is not None:
                return found
    return None


def shown(count):
    """How many of COUNT elements to show: no more than "set print elements" allows."""
    limit = gdb.parameter("print elements")
    return min(count, limit) if limit else count


def plural(count, what):
    return "%d %s%s" % (count, what, "" if count == 1 else "s")


class ByteBuffer:
    """The used bytes, from byte 0 on, and what lies around them."""

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
                # One byte more, where there is one: its low bits are the high bits of the last.
                bits = int.from_bytes(self.read(min(count + 1, self.size)), "little") >> self.shift
                aligned = (bits & ((1 << 8 * count) - 1)).to_bytes(count, "little")
                yield "pendingBitShift", self.shift
                yield "aligned", self.text(aligned)
        except gdb.MemoryError:
            yield "bytes", "<not readable>"
        yield "padLow", self.low
        yield "padHigh", self.high


class Number:
    """The whole value, however wide."""

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
            # Word by word, since the order of the bytes within one is the host's.
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
    """Decimal text of any length: Python refuses more than a few thousand digits at once."""
    if value < 0:
        return "-" + decimal(-value)
    if value < 10**4000:
        return str(value)
    digits = value.bit_length() // 7  # about half of them
    high, low = divmod(value, 10**digits)
    return decimal(high) + decimal(low).rjust(digits, "0")


class StrTok:
    """The text after the tokens that were taken, and how it is split."""

    def __init__(self, value):
        self.position, self.length = int(value["position"]), int(value["length"])
        self.buffer = owned(value["buffer"])
        self.delimiters = value["delimiters"]
        self.quotes, self.keep = bool(value["handleQuotes"]), bool(value["keepQuotes"])
        self.pending = int(value["pendingEmptyToken"])

    def to_string(self):
        try:
            # By the minimal symbol, which a stripped library has too.
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
