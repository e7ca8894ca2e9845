// SPDX-License-Identifier: MIT
//
// Measures how fields of 1 to 64 bits are read and written at random positions.
#include "peers.h"
#include "row.h"

#include "KelRT/Kel_ByteBuffer.h"

using namespace bench;

namespace {

struct Field {
    std::uint32_t position;
    std::uint32_t count;
    std::uint64_t value;
};
using Fields = std::vector<Field>;
constexpr std::size_t FIELDS = 1024;

Fields randomFields(std::size_t bytes) {
    std::mt19937_64 random(bytes);
    Fields fields(FIELDS);
    for (auto& field : fields) {
        field.count = static_cast<std::uint32_t>(random() % 64 + 1);
        field.position = static_cast<std::uint32_t>(random() % (8 * bytes - field.count + 1));
        field.value = random();
        if (field.count < 64) // a caller of APInt must clear the bits above the field
            field.value &= (std::uint64_t{1} << field.count) - 1;
    }
    return fields;
}

struct KelUtil {
    explicit KelUtil(const Bytes& bytes) : buffer(bytes.data(), bytes.size(), 0, 0) {}
    KelRT::Kel_ByteBuffer buffer;
    std::uint64_t get(std::uint32_t position, std::uint32_t count) {
        return buffer.getBitsLL(position, count);
    }
    void set(std::uint32_t position, std::uint32_t count, std::uint64_t value) {
        buffer.setBitsLL(position, count, value);
    }
    std::string text() { return {buffer.ptr(), buffer.ptr() + buffer.getSize()}; }
};

template <typename Holder>
struct Reading {
    Holder holder;
    Fields fields;
    std::uint64_t sum = 0;
    void run() {
        for (const auto& field : fields) {
            std::uint64_t value = holder.get(field.position, field.count);
            benchmark::DoNotOptimize(value);
            sum += value;
        }
    }
    std::string result() { return std::to_string(sum); }
};

template <typename Holder>
struct Writing {
    Holder holder;
    Fields fields;
    void run() {
        for (const auto& field : fields)
            holder.set(field.position, field.count, field.value);
    }
    std::string result() { return holder.text(); }
};

template <template <typename> typename Work>
void rows(const char* work, const char* size, std::size_t count) {
    const Bytes bytes = randomBytes(count);
    const Fields fields = randomFields(count);
    Row row("fields", work, size, FIELDS);
    row.add("KelUtil", Work<KelUtil>{KelUtil(bytes), fields});
    const auto contender = [&](auto peer) {
        using Bits = typename decltype(peer)::Bits;
        return Work<Bits>{Bits(bytes), fields};
    };
    row.addPeer<peers::Llvm>("APInt", contender);
    row.addPeer<peers::Boost>("dynamic_bitset", contender);
}

} // namespace

int main(int argc, char** argv) {
    for (const auto& [name, count] :
         {std::pair<const char*, std::size_t>{"64 B", 64}, {"4 KiB", 4096}, {"1 MiB", 1 << 20}}) {
        rows<Reading>("read", name, count);
        rows<Writing>("write", name, count);
    }
    return runAll(argc, argv);
}
