#include "pdf/InflateLimit.h"

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <memory>
#include <qpdf/Pl_Flate.hh>
#include <qpdf/QPDF.hh>
#include <qpdf/QPDFStreamFilter.hh>
#include <stdexcept>
#include <vector>

namespace {

constexpr std::uint64_t kMebibyte = 1024 * 1024;
constexpr std::uint64_t kLeast = 16 * kMebibyte;
constexpr std::uint64_t kMost = 256 * kMebibyte;
constexpr std::uint64_t kFactor = 32;
constexpr long long kLongestRow = 65'536;

std::atomic<std::int64_t>& Left() {
    static std::atomic<std::int64_t> left{0};
    return left;
}

// Lets through what is left.
class CCounted : public Pipeline {
public:
    explicit CCounted(Pipeline* next) : Pipeline("counted", next) {}
    void write(const unsigned char* data, size_t size) override {
        if ((Left() -= static_cast<std::int64_t>(size)) < 0) {
            throw std::runtime_error("its compressed streams are too large");
        }
        getNext()->write(data, size);
    }
    void finish() override { getNext()->finish(); }
};

unsigned char Paeth(int left, int up, int corner) {
    const int guess = left + up - corner;
    const int toLeft = std::abs(guess - left);
    const int toUp = std::abs(guess - up);
    const int toCorner = std::abs(guess - corner);
    if (toLeft <= toUp && toLeft <= toCorner) return static_cast<unsigned char>(left);
    return static_cast<unsigned char>(toUp <= toCorner ? up : corner);
}

// Undoes the PNG filters (ISO/IEC 15948, 9) of rows of bytes, a pixel being one byte.
class CPngRows : public Pipeline {
public:
    CPngRows(Pipeline* next, std::size_t length)
        : Pipeline("rows", next), m_row(length), m_above(length) {}

    void write(const unsigned char* data, size_t size) override {
        for (const unsigned char* const end = data + size; data != end; ++data) {
            if (m_filter < 0) {
                m_filter = *data;
                continue;
            }
            m_row[m_at++] = *data;
            if (m_at == m_row.size()) Flush();
        }
    }

    void finish() override {
        if (m_at > 0) Flush();
        getNext()->finish();
    }

private:
    void Flush() {
        for (std::size_t i = 0; i < m_at; ++i) {
            m_row[i] = static_cast<unsigned char>(m_row[i] + Guess(i));
        }
        getNext()->write(m_row.data(), m_at);
        m_above.swap(m_row);
        m_at = 0;
        m_filter = -1;
    }

    unsigned char Guess(std::size_t i) const {
        const int left = i ? m_row[i - 1] : 0;
        const int up = m_above[i];
        switch (m_filter) {
            case 1: return static_cast<unsigned char>(left);
            case 2: return static_cast<unsigned char>(up);
            case 3: return static_cast<unsigned char>((left + up) / 2);
            case 4: return Paeth(left, up, i ? m_above[i - 1] : 0);
            default: return 0;
        }
    }

    std::vector<unsigned char> m_row;
    std::vector<unsigned char> m_above;
    std::size_t m_at = 0;
    int m_filter = -1;  // none read yet
};

long long NumberOf(QPDFObjectHandle dictionary, const char* key, long long otherwise) {
    auto number = dictionary.getKey(key);
    if (number.isNull()) return otherwise;
    return number.isInteger() ? number.getIntValue() : -1;
}

class CInflate : public QPDFStreamFilter {
public:
    bool setDecodeParms(QPDFObjectHandle parameters) override {
        if (parameters.isNull()) return true;
        if (!parameters.isDictionary()) return false;
        const long long predictor = NumberOf(parameters, "/Predictor", 1);
        if (predictor == 1) return true;
        const long long columns = NumberOf(parameters, "/Columns", 1);
        if (predictor < 10 || predictor > 15 || columns < 1 || columns > kLongestRow) return false;
        m_columns = static_cast<std::size_t>(columns);
        return NumberOf(parameters, "/Colors", 1) == 1 &&
               NumberOf(parameters, "/BitsPerComponent", 8) == 8;
    }

    Pipeline* getDecodePipeline(Pipeline* next) override {
        if (m_columns > 0) {
            m_rows = std::make_unique<CPngRows>(next, m_columns);
            next = m_rows.get();
        }
        m_counted = std::make_unique<CCounted>(next);
        m_inflate = std::make_unique<Pl_Flate>("inflate", m_counted.get(), Pl_Flate::a_inflate);
        return m_inflate.get();
    }

private:
    std::size_t m_columns = 0;  // 0: no predictor
    std::unique_ptr<CPngRows> m_rows;
    std::unique_ptr<CCounted> m_counted;
    std::unique_ptr<Pl_Flate> m_inflate;
};

class CRefused : public QPDFStreamFilter {
public:
    bool setDecodeParms(QPDFObjectHandle) override { return false; }
    Pipeline* getDecodePipeline(Pipeline* next) override { return next; }
};

bool Register() {
    QPDF::registerStreamFilter("/FlateDecode", [] { return std::make_shared<CInflate>(); });
    for (const char* name : {"/LZWDecode", "/RunLengthDecode"}) {
        QPDF::registerStreamFilter(name, [] { return std::make_shared<CRefused>(); });
    }
    return true;
}

}  // namespace

void LimitInflation(std::uint64_t fileSize) {
    [[maybe_unused]] static const bool registered = Register();
    Left() = static_cast<std::int64_t>(
        fileSize < kMost / kFactor ? std::max(kLeast, fileSize * kFactor) : kMost);
}
