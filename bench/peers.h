// SPDX-License-Identifier: MIT
//
// Each peer has a structure here with the operations that the benchmarks measure. If a peer
// is not installed, or the program at hand does not compare it, its macro HAVE_... is not defined,
// and its structure only derives from `Missing`.
#pragma once

#include <cstdint>
#include <cstring>
#include <ostream>
#include <string>
#include <vector>

namespace peers {

using Bytes = std::vector<unsigned char>;

struct Missing {
    static constexpr bool MISSING = true;
};

/// Copies the memory of \a bytes into integers.
template <typename Integer>
std::vector<Integer> integersOf(const Bytes& bytes) {
    std::vector<Integer> integers(bytes.size() / sizeof(Integer));
    std::memcpy(integers.data(), bytes.data(), bytes.size());
    return integers;
}

/// Copies the memory of \a integers into a string, for comparing results.
template <typename Integer>
std::string memoryText(const Integer* integers, std::size_t bytes) {
    const auto* const first = reinterpret_cast<const char*>(integers);
    return {first, first + bytes};
}

} // namespace peers

#ifdef HAVE_GMP
#include <gmpxx.h>
namespace peers {
struct Gmp {
    using Limbs = std::vector<mp_limb_t>;
    static Limbs limbsOf(const Bytes& bytes) { return integersOf<mp_limb_t>(bytes); }
    static std::string text(const Limbs& limbs) {
        return memoryText(limbs.data(), limbs.size() * sizeof(mp_limb_t));
    }
    static void shiftDown(Limbs& limbs, unsigned bits) {
        mpn_rshift(limbs.data(), limbs.data(), static_cast<mp_size_t>(limbs.size()), bits);
    }

    struct Integer {
        mpz_class value;
        void read(const std::string& text, int radix) {
            mpz_set_str(value.get_mpz_t(), text.c_str(), radix);
        }
        void read(const Bytes& bytes) {
            mpz_import(value.get_mpz_t(), bytes.size(), -1, 1, 0, 0, bytes.data());
        }
        /// \param radix negative for upper-case letters
        void print(std::string& text, int radix) const {
            text.resize(mpz_sizeinbase(value.get_mpz_t(), std::abs(radix)));
            mpz_get_str(text.data(), radix, value.get_mpz_t());
            if (text.back() == '\0') // mpz_sizeinbase may count one digit too many
                text.pop_back();
        }
        void write(Bytes& bytes) const {
            mpz_export(bytes.data(), nullptr, -1, 1, 0, 0, value.get_mpz_t());
        }
    };

    struct Number {
        Number(unsigned base, unsigned /*bits*/, const std::string& hex)
            : radix(static_cast<int>(base)), integer{mpz_class(hex, 16)} {}
        int radix;
        Integer integer;
        std::string print() const {
            std::string text;
            integer.print(text, radix);
            return text;
        }
        void parse(const std::string& text) { integer.read(text, radix); }
        std::string hex() const { return integer.value.get_str(16); }
        static std::string spelled(const std::string& text) { return text; }
    };
};
} // namespace peers
#else
namespace peers {
struct Gmp : Missing {};
} // namespace peers
#endif

#ifdef HAVE_FLINT
#include <flint/fmpz.h>

#include <memory>
namespace peers {
struct Flint {
    struct Number {
        Number(unsigned base, unsigned /*bits*/, const std::string& hex)
            : radix(static_cast<int>(base)) {
            fmpz_set_str(value.get(), hex.c_str(), 16);
        }
        int radix;
        std::shared_ptr<fmpz> value{new fmpz(0), [](fmpz* used) {
                                        fmpz_clear(used);
                                        delete used;
                                    }};
        std::string print() const { return digits(radix); }
        void parse(const std::string& text) { fmpz_set_str(value.get(), text.c_str(), radix); }
        std::string hex() const { return digits(16); }
        static std::string spelled(const std::string& text) { return text; }
        std::string digits(int base) const {
            std::string text(fmpz_sizeinbase(value.get(), base), '\0');
            fmpz_get_str(text.data(), base, value.get());
            if (text.back() == '\0') // fmpz_sizeinbase may count one digit too many
                text.pop_back();
            return text;
        }
    };
};
} // namespace peers
#else
namespace peers {
struct Flint : Missing {};
} // namespace peers
#endif

#ifdef HAVE_LLVM
#include <llvm/ADT/APInt.h>
#include <llvm/ADT/StringExtras.h>
#include <llvm/Support/Format.h>
#include <llvm/Support/MathExtras.h>
#include <llvm/Support/raw_ostream.h>
namespace peers {
struct Llvm {
    struct Bits {
        explicit Bits(const Bytes& bytes)
            : value(static_cast<unsigned>(bytes.size() * 8), integersOf<std::uint64_t>(bytes)) {}
        llvm::APInt value;
        std::uint64_t get(std::uint32_t position, std::uint32_t count) const {
            return value.extractBitsAsZExtValue(count, position);
        }
        void set(std::uint32_t position, std::uint32_t count, std::uint64_t field) {
            value.insertBits(field, position, count);
        }
        void shiftDown(unsigned bits) { value.lshrInPlace(bits); }
        void reverseBytes() { value = value.byteSwap(); }
        std::string text() const { return memoryText(value.getRawData(), value.getBitWidth() / 8); }
    };

    struct Number {
        Number(unsigned base, unsigned width, const std::string& hex)
            : radix(static_cast<std::uint8_t>(base)), bits(width), value(width, hex, 16) {}
        std::uint8_t radix;
        unsigned bits;
        llvm::APInt value;
        std::string print() const { return llvm::toString(value, radix, false); }
        void parse(const std::string& text) { value = llvm::APInt(bits, text, radix); }
        std::string hex() const { return llvm::toString(value, 16, false); }
        static std::string spelled(const std::string& text) { return text; }
    };

    /// Holds a register, and a number of \a bits bits.
    struct Register {
        Register(const Bytes& bytes, unsigned bits) : scan(bytes), number(bits, 0) {}
        Bits scan;
        llvm::APInt number;
        void readField(std::uint32_t position) {
            number = scan.value.extractBits(number.getBitWidth(), position);
        }
        void writeField(std::uint32_t position) { scan.value.insertBits(number, position); }
        void setInteger(std::uint64_t value) { number = value; }
        std::uint64_t integer() const {
            return number.getActiveBits() <= 64 ? number.getZExtValue() : 0;
        }
        std::string text() const {
            const std::string digits = llvm::toString(number, 16, false);
            const std::string zeros((number.getBitWidth() + 3) / 4 - digits.size(), '0');
            return llvm::StringRef(zeros + digits).lower() + scan.text();
        }
    };

    static unsigned char mirror(unsigned char byte) { return llvm::reverseBits(byte); }

    using Decoded = std::string;
    static void encodeHex(const Bytes& bytes, std::string& text) { text = llvm::toHex(bytes); }
    static void decodeHex(const std::string& text, Decoded& bytes) { bytes = llvm::fromHex(text); }

    struct Dump {
        explicit Dump(int descriptor) : stream(descriptor, false) {}
        llvm::raw_fd_ostream stream;
        void write(const Bytes& bytes) {
            stream << llvm::format_bytes(bytes, 0);
            stream.flush();
        }
    };
};
} // namespace peers
#else
namespace peers {
struct Llvm : Missing {};
} // namespace peers
#endif

#ifdef HAVE_OPENSSL
#include <openssl/crypto.h>
namespace peers {
struct OpenSsl {
    using Decoded = Bytes;
    static void encodeHex(const Bytes& bytes, std::string& text) {
        OPENSSL_buf2hexstr_ex(text.data(), text.size(), nullptr, bytes.data(), bytes.size(), '\0');
    }
    static void decodeHex(const std::string& text, Decoded& bytes) {
        OPENSSL_hexstr2buf_ex(bytes.data(), bytes.size(), nullptr, text.c_str(), '\0');
    }
};
} // namespace peers
#else
namespace peers {
struct OpenSsl : Missing {};
} // namespace peers
#endif

#ifdef HAVE_ABSL
#include <absl/strings/escaping.h>
#include <absl/strings/numbers.h>
#include <absl/strings/str_cat.h>
#include <absl/strings/str_split.h>
namespace peers {
struct Absl {
    using Decoded = std::string;
    static void encodeHex(const Bytes& bytes, std::string& text) {
        text = absl::BytesToHexString(
            absl::string_view(reinterpret_cast<const char*>(bytes.data()), bytes.size()));
    }
    template <typename Text>
    static void decodeHex(const Text& text, Decoded& bytes) {
        if constexpr (requires { absl::HexStringToBytes(text, &bytes); }) // since 2024
            static_cast<void>(absl::HexStringToBytes(text, &bytes));
        else
            bytes = absl::HexStringToBytes(text);
    }

    static void printDecimal(std::uint64_t value, std::string& out) {
        out.clear();
        absl::StrAppend(&out, value);
    }
    static void printHex(std::uint64_t value, std::string& out) {
        out.clear();
        absl::StrAppend(&out, absl::Hex(value));
    }
    static std::uint64_t parseDecimal(const std::string& text) {
        std::uint64_t value = 0;
        return absl::SimpleAtoi(text, &value) ? value : 0;
    }
    static std::uint64_t parseHex(const std::string& text) {
        std::uint64_t value = 0;
        return absl::SimpleHexAtoi(text, &value) ? value : 0;
    }

    template <typename Visit>
    static void eachToken(const std::string& text, const char* delimiters, bool /*keepEmpty*/,
                          Visit visit) {
        const auto pass = [&](const auto& tokens) {
            for (const absl::string_view token : tokens)
                visit({token.data(), token.size()});
        };
        if (delimiters[1] == '\0')
            pass(absl::StrSplit(text, *delimiters));
        else
            pass(absl::StrSplit(text, absl::ByAnyChar(delimiters), absl::SkipEmpty()));
    }
};
} // namespace peers
#else
namespace peers {
struct Absl : Missing {};
} // namespace peers
#endif

#ifdef HAVE_FMT
#include <fmt/compile.h>
#include <fmt/format.h>
namespace peers {
struct Fmt {
    static void printDecimal(std::uint64_t value, std::string& out) {
        const fmt::format_int text(value);
        out.assign(text.data(), text.size());
    }
    static void printHex(std::uint64_t value, std::string& out) {
        char text[64];
        char* const end = fmt::format_to(text, FMT_COMPILE("{:x}"), value);
        out.assign(text, end);
    }
};
} // namespace peers
#else
namespace peers {
struct Fmt : Missing {};
} // namespace peers
#endif

#ifdef HAVE_BOOST
#include <boost/algorithm/hex.hpp>
#include <boost/dynamic_bitset.hpp>
#include <boost/multiprecision/cpp_int.hpp>
#include <boost/tokenizer.hpp>
namespace peers {
struct Boost {
    using Bitset = boost::dynamic_bitset<unsigned char>;

    struct Bits {
        explicit Bits(const Bytes& bytes) : bits(bytes.begin(), bytes.end()) {}
        Bitset bits;
        std::uint64_t get(std::uint32_t position, std::uint32_t count) const {
            std::uint64_t field = 0;
            for (std::uint32_t i = count; i-- > 0;)
                field = field << 1 | (bits.test(position + i) ? 1U : 0U);
            return field;
        }
        void set(std::uint32_t position, std::uint32_t count, std::uint64_t field) {
            for (std::uint32_t i = 0; i < count; ++i)
                bits.set(position + i, (field >> i & 1) != 0);
        }
        std::string text() const {
            std::string blocks(bits.num_blocks(), '\0');
            boost::to_block_range(bits, blocks.begin());
            return blocks;
        }
    };

    struct Number {
        Number(unsigned base, unsigned /*bits*/, const std::string& hex)
            : radix(base), value("0x" + hex) {}
        unsigned radix;
        boost::multiprecision::cpp_int value;
        std::string print() const {
            return value.str(0, radix == 16  ? std::ios_base::hex
                                : radix == 8 ? std::ios_base::oct
                                             : std::ios_base::dec);
        }
        void parse(const std::string& text) { value.assign(text); }
        std::string hex() const { return value.str(0, std::ios_base::hex); }
        std::string spelled(const std::string& text) const {
            return (radix == 16 ? "0x" : radix == 8 ? "0" : "") + text;
        }
    };

    using Decoded = Bytes;
    static void encodeHex(const Bytes& bytes, std::string& text) {
        boost::algorithm::hex(bytes.begin(), bytes.end(), text.begin());
    }
    static void decodeHex(const std::string& text, Decoded& bytes) {
        boost::algorithm::unhex(text.begin(), text.end(), bytes.begin());
    }

    static void printBits(const Bytes& bytes, std::string& text) {
        boost::to_string(Bitset(bytes.begin(), bytes.end()), text);
    }
    static void parseBits(const std::string& text, Bytes& bytes) {
        boost::to_block_range(Bitset(text), bytes.begin());
    }

    template <typename Visit>
    static void eachToken(const std::string& text, const char* delimiters, bool keepEmpty,
                          Visit visit) {
        using Separator = boost::char_separator<char>;
        const boost::tokenizer<Separator> tokenizer(
            text, Separator(delimiters, "",
                            keepEmpty ? boost::keep_empty_tokens : boost::drop_empty_tokens));
        for (const std::string& token : tokenizer)
            visit(token);
    }
};
} // namespace peers
#else
namespace peers {
struct Boost : Missing {};
} // namespace peers
#endif

#ifdef HAVE_SPDLOG
#include <spdlog/fmt/bin_to_hex.h>
#include <spdlog/sinks/basic_file_sink.h>
#include <spdlog/spdlog.h>
namespace peers {
struct Spdlog {
    using Logger = std::shared_ptr<spdlog::logger>;
    static Logger open(const std::string& path) {
        auto logger = std::make_shared<spdlog::logger>(
            "bench", std::make_shared<spdlog::sinks::basic_file_sink_st>(path));
        logger->set_pattern("%v");
        logger->flush_on(spdlog::level::trace);
        return logger;
    }
    static void record(const Logger& logger, bool isWritten, const char* state, unsigned bits,
                       unsigned address) {
        logger->log(isWritten ? spdlog::level::info : spdlog::level::debug,
                    "chain in state {}: shifted {} bits from 0x{:08x}", state, bits, address);
    }
    static void dump(const Logger& logger, const Bytes& bytes) {
        logger->info("{}", spdlog::to_hex(bytes));
    }
};
} // namespace peers
#else
namespace peers {
struct Spdlog : Missing {};
} // namespace peers
#endif

#ifdef HAVE_GLOG
#include <glog/logging.h>

#include <iomanip>
namespace peers {
struct Glog {
    /// Sets \a path as the name of the log file, which the first record opens.
    static void start(const std::string& path) {
        FLAGS_log_prefix = false;
        FLAGS_logbuflevel = -1; // flush each line
        FLAGS_max_log_size = 4095;
        google::SetLogDestination(google::GLOG_INFO, path.c_str());
        google::SetLogSymlink(google::GLOG_INFO, "");
        google::SetLogFilenameExtension("");
        FLAGS_timestamp_in_logfile_name = false;
        google::InitGoogleLogging("bench");
        LOG(INFO) << "start";
    }
    static void record(const char* state, unsigned bits, unsigned address) {
        LOG(INFO) << "chain in state " << state << ": shifted " << bits << " bits from 0x"
                  << std::hex << std::setfill('0') << std::setw(8) << address;
    }
    static void filteredRecord(int level, const char* state) {
        VLOG(level) << "chain in state " << state;
    }
};
} // namespace peers
#else
namespace peers {
struct Glog : Missing {};
} // namespace peers
#endif

#ifdef HAVE_XXD
namespace peers {
struct Xxd {
    static constexpr const char* PROGRAM = HAVE_XXD;
};
} // namespace peers
#else
namespace peers {
struct Xxd : Missing {};
} // namespace peers
#endif
