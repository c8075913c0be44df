#include "bench/processes/BigPdf.h"

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <vector>

namespace {

class CPdfWriter {
public:
    explicit CPdfWriter(const std::string& path) : m_file(path, std::ios::binary) {}

    bool Write(std::size_t size) {
        m_file << "%PDF-1.7\n";
        Object("<< /Type /Catalog /Pages 2 0 R >>");
        Object("<< /Type /Pages /Kids [3 0 R] /Count 1 >>");
        Object("<< /Type /Page /Parent 2 0 R /MediaBox [0 0 595 842] >>");
        Begin();
        m_file << "<< /Length " << size << " >>\nstream\n";
        Noise(size);
        m_file << "\nendstream\nendobj\n";
        Table();
        return m_file.flush().good();
    }

private:
    void Begin() {
        m_offsets.push_back(m_file.tellp());
        m_file << m_offsets.size() << " 0 obj\n";
    }

    void Object(const char* body) {
        Begin();
        m_file << body << "\nendobj\n";
    }

    void Noise(std::size_t size) {
        unsigned long long state = 1;
        std::string piece;
        for (std::size_t left = size; left > 0; left -= piece.size()) {
            piece.resize(std::min<std::size_t>(left, 64 << 10));
            for (char& byte : piece) {
                state = state * 6364136223846793005u + 1442695040888963407u;
                byte = static_cast<char>(state >> 56);
            }
            m_file.write(piece.data(), static_cast<std::streamsize>(piece.size()));
        }
    }

    void Table() {
        const auto start = m_file.tellp();
        m_file << "xref\n0 " << m_offsets.size() + 1 << "\n0000000000 65535 f \n";
        for (const auto offset : m_offsets) {
            char line[32];
            std::snprintf(line, sizeof line, "%010lld 00000 n \n", static_cast<long long>(offset));
            m_file << line;
        }
        m_file << "trailer\n<< /Size " << m_offsets.size() + 1 << " /Root 1 0 R >>\nstartxref\n"
               << start << "\n%%EOF\n";
    }

    std::ofstream m_file;
    std::vector<std::streamoff> m_offsets;
};

}  // namespace

bool WriteBigPdf(const std::string& path, std::size_t size) { return CPdfWriter(path).Write(size); }
