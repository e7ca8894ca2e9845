// SPDX-License-Identifier: MIT
//
// Fields of 1 to 64 bits at random positions, read and written.
#include "peers.h"
#include "row.h"

#include "KelRT/Kel_ByteBuffer.h"

#include <cstring>

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
        if (field.count < 64) // APInt's callers hand over no bits above the field
            field.value &= (std::uint64_t{1} << field.count) - 1;
    }
    return fields;
}

struct KelUtil {
    explicit KelUtil(const Bytes& bytes) : buffer(bytes.data(), bytes.size(), 0, 0) {}
    KelRT::Kel_ByteBuffer buffer;
    std::uint64_t get(const Field& field) { return buffer.getBitsLL(field.position, field.count); }
    void set(const Field& field) { buffer.setBitsLL(field.position, field.count, field.value); }
    std::string text() { return {buffer.ptr(), buffer.ptr() + buffer.getSize()}; }
};

#ifdef HAVE_LLVM
struct APInt {
    explicit APInt(const Bytes& bytes) {
        std::vector<std::uint64_t> words(bytes.size() / 8);
        std::memcpy(words.data(), bytes.data(), bytes.size());
        value = llvm::APInt(static_cast<unsigned>(bytes.size() * 8), words);
    }
    llvm::APInt value{1, 0};
    std::uint64_t get(const Field& field) {
        return value.extractBitsAsZExtValue(field.count, field.position);
    }
    void set(const Field& field) { value.insertBits(field.value, field.position, field.count); }
    std::string text() {
        const auto* const bytes = reinterpret_cast<const char*>(value.getRawData());
        return {bytes, bytes + value.getBitWidth() / 8};
    }
};
#endif

#ifdef HAVE_BOOST
struct DynamicBitset {
    explicit DynamicBitset(const Bytes& bytes) : bits(bytes.begin(), bytes.end()) {}
    boost::dynamic_bitset<unsigned char> bits;
    std::uint64_t get(const Field& field) {
        std::uint64_t value = 0;
        for (std::uint32_t i = field.count; i-- > 0;)
            value = value << 1 | (bits.test(field.position + i) ? 1U : 0U);
        return value;
    }
    void set(const Field& field) {
        for (std::uint32_t i = 0; i < field.count; ++i)
            bits.set(field.position + i, (field.value >> i & 1) != 0);
    }
    std::string text() {
        std::string blocks(bits.num_blocks(), '\0');
        boost::to_block_range(bits, blocks.begin());
        return blocks;
    }
};
#endif

template <typename Holder>
struct Reading {
    Holder holder;
    Fields fields;
    std::uint64_t sum = 0;
    void run() {
        for (const auto& field : fields) {
            std::uint64_t value = holder.get(field);
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
            holder.set(field);
    }
    std::string result() { return holder.text(); }
};

template <template <typename> class Work>
void rows(const char* work, const char* size, std::size_t count) {
    const Bytes bytes = randomBytes(count);
    const Fields fields = randomFields(count);
    Row row("fields", work, size, FIELDS);
    row.add("KelUtil", Work<KelUtil>{KelUtil(bytes), fields});
#ifdef HAVE_LLVM
    row.add("APInt", Work<APInt>{APInt(bytes), fields});
#else
    row.missing("APInt");
#endif
#ifdef HAVE_BOOST
    row.add("dynamic_bitset", Work<DynamicBitset>{DynamicBitset(bytes), fields});
#else
    row.missing("dynamic_bitset");
#endif
}

} // namespace

int main(int argc, char** argv) {
    for (const auto& [name, count] :
         {std::pair<const char*, std::size_t>{"64 B", 64}, {"4 KiB", 4096}, {"1 MiB", 1 << 20}}) {
        rows<Reading>("read", name, count);
        rows<Writing>("write", name, count);
    }
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
