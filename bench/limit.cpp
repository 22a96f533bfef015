#include "limit.h"

#include <zlib.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <cstdio>
#include <memory>
#include <random>
#include <stdexcept>
#include <string_view>
#include <vector>

namespace corvane::bench {

namespace {

/// Rows that differ; then they come again. A page never holds the same row twice.
constexpr int kDistinctRows = 20'000;
constexpr int kRowsPerPage = 56;
constexpr int kTopOfText = 725;
constexpr double kLineHeight = 11.5;
constexpr std::array kColumns {72.0, 130.0, 240.0, 300.0, 345.5, 415.0, 490.0};

using Row = std::array<std::string, kColumns.size()>;

std::vector<Row> makeRows()
{
    static constexpr std::array kNames {"Abbott", "Alvarez", "Bennett", "Brooks", "Castillo", "Chen", "Dawson", "Eriksen",
        "Foster", "Garcia", "Hughes", "Ivanova", "Jensen", "Kowalski", "Lindqvist", "Mbeki", "Nakamura", "Okafor",
        "Peterson", "Quinn", "Ramirez", "Schneider", "Thompson", "Underhill", "Vasquez", "Whitaker", "Yamada", "Zimmer"};
    static constexpr std::array kGiven {"Anna", "Brian", "Carla", "David", "Elena", "Frank", "Grace", "Henry", "Irene",
        "James", "Karen", "Louis", "Maria", "Nathan", "Olivia", "Paul", "Rosa", "Samuel", "Teresa", "Victor"};
    static constexpr std::array kStatus {"Arrived", "Cancelled", "Completed", "No show", "Scheduled", "Waiting"};
    static constexpr std::array kKinds {"Follow up", "Intake", "Group", "Medication", "Individual", "Family"};
    std::mt19937 random(20'021);
    const auto below = [&](unsigned n) { return int(random() % n); };
    std::vector<Row> rows(kDistinctRows);
    std::array<char, 64> text {};
    const auto print = [&](const char *format, auto... values) {
        std::snprintf(text.data(), text.size(), format, values...);
        return std::string(text.data());
    };
    for (int i = 0; i < kDistinctRows; ++i) {
        rows[size_t(i)] = {print("%06d", 100'000 + i),
            print("%s, %s", kNames[size_t(below(kNames.size()))], kGiven[size_t(below(kGiven.size()))]),
            print("%02d/%02d/%d", 1 + below(12), 1 + below(28), 2020 + below(6)),
            print("%02d:%02d", 8 + below(10), 15 * below(4)), print("Room %d%c", 1 + below(40), 'A' + below(4)),
            kStatus[size_t(below(kStatus.size()))], kKinds[size_t(below(kKinds.size()))]};
    }
    return rows;
}

const std::vector<Row> &rowsInMemory()
{
    static const std::vector<Row> rows = makeRows();
    return rows;
}

class LimitFile
{
public:
    explicit LimitFile(const std::string &fileName);
    ~LimitFile();
    LimitFile(const LimitFile &) = delete;
    LimitFile &operator=(const LimitFile &) = delete;

    void addPage(int firstRow, int endRow);
    void close();

private:
    void fillContent(int firstRow, int endRow);
    void beginObject(int number);
    void write(const char *data, size_t size);
    void write(const std::string &text) { write(text.data(), text.size()); }

    struct Close {
        void operator()(std::FILE *file) const { std::fclose(file); }
    };
    std::unique_ptr<std::FILE, Close> m_file;
    z_stream m_deflate {};
    std::vector<char> m_content;
    size_t m_contentSize = 0;
    std::vector<unsigned char> m_packed;
    std::vector<size_t> m_offsets; ///< by object number - 1
    size_t m_written = 0;
    int m_pages = 0;
};

// Objects: 1 catalog, 2 page tree, 3 font, then a page and its contents in turn.
constexpr int kFirstPage = 4;

LimitFile::LimitFile(const std::string &fileName)
    : m_file(std::fopen(fileName.c_str(), "wb"))
    , m_content(size_t(256) * 1024)
    , m_packed(compressBound(uLong(m_content.size())))
{
    if (!m_file || deflateInit(&m_deflate, 6) != Z_OK)
        throw std::runtime_error("cannot write " + fileName);
    std::setvbuf(m_file.get(), nullptr, _IOFBF, 1 << 18);
    write("%PDF-1.4\n");
}

LimitFile::~LimitFile()
{
    deflateEnd(&m_deflate);
}

void LimitFile::write(const char *data, size_t size)
{
    if (std::fwrite(data, 1, size, m_file.get()) != size)
        throw std::runtime_error("cannot write the limit's file");
    m_written += size;
}

void LimitFile::beginObject(int number)
{
    if (m_offsets.size() < size_t(number))
        m_offsets.resize(size_t(number));
    m_offsets[size_t(number) - 1] = m_written;
    write(std::to_string(number) + " 0 obj\n");
}

void LimitFile::fillContent(int firstRow, int endRow)
{
    const std::vector<Row> &rows = rowsInMemory();
    char *at = m_content.data();
    const auto put = [&](const char *text) {
        at = std::ranges::copy(std::string_view(text), at).out;
    };
    const auto number = [&](double value) { // at most one decimal is needed here
        int tenths = int(value * 10);
        if (tenths < 0) {
            *at++ = '-';
            tenths = -tenths;
        }
        at = std::to_chars(at, at + 12, tenths / 10).ptr;
        if (tenths % 10 != 0) {
            *at++ = '.';
            *at++ = char('0' + tenths % 10);
        }
        *at++ = ' ';
    };
    for (int row = firstRow; row < endRow; ++row) {
        const Row &cells = rows[size_t(row % kDistinctRows)];
        const double top = kTopOfText - (row - firstRow) * kLineHeight;
        for (size_t column = 0; column < cells.size(); ++column) {
            put("BT /F1 9 Tf ");
            number(kColumns[column]);
            number(top);
            put("Td (");
            at = std::ranges::copy(cells[column], at).out;
            put(") Tj ET\n");
        }
    }
    m_contentSize = size_t(at - m_content.data());
}

void LimitFile::addPage(int firstRow, int endRow)
{
    fillContent(firstRow, endRow);
    deflateReset(&m_deflate);
    m_deflate.next_in = reinterpret_cast<Bytef *>(m_content.data());
    m_deflate.avail_in = uInt(m_contentSize);
    m_deflate.next_out = m_packed.data();
    m_deflate.avail_out = uInt(m_packed.size());
    deflate(&m_deflate, Z_FINISH);
    const size_t size = m_packed.size() - m_deflate.avail_out;

    const int page = kFirstPage + 2 * m_pages++;
    beginObject(page);
    write("<</Type/Page/Parent 2 0 R/MediaBox[0 0 612 792]/Resources<</Font<</F1 3 0 R>>>>/Contents "
        + std::to_string(page + 1) + " 0 R>>\nendobj\n");
    beginObject(page + 1);
    write("<</Filter/FlateDecode/Length " + std::to_string(size) + ">>\nstream\n");
    write(reinterpret_cast<const char *>(m_packed.data()), size);
    write("\nendstream\nendobj\n");
}

void LimitFile::close()
{
    beginObject(1);
    write("<</Type/Catalog/Pages 2 0 R>>\nendobj\n");
    beginObject(2);
    std::string kids;
    for (int i = 0; i < m_pages; ++i)
        kids += std::to_string(kFirstPage + 2 * i) + " 0 R ";
    write("<</Type/Pages/Count " + std::to_string(m_pages) + "/Kids[" + kids + "]>>\nendobj\n");
    beginObject(3);
    write("<</Type/Font/Subtype/Type1/BaseFont/Helvetica/Encoding/WinAnsiEncoding>>\nendobj\n");

    const size_t xref = m_written;
    const std::string count = std::to_string(m_offsets.size() + 1);
    std::string table = "xref\n0 " + count + "\n0000000000 65535 f \n";
    std::array<char, 24> line {};
    for (const size_t offset : m_offsets) {
        std::snprintf(line.data(), line.size(), "%010zu 00000 n \n", offset);
        table += line.data();
    }
    write(table + "trailer\n<</Size " + count + "/Root 1 0 R>>\nstartxref\n" + std::to_string(xref) + "\n%%EOF\n");
    if (std::fclose(m_file.release()) != 0)
        throw std::runtime_error("cannot close the limit's file");
}

} // namespace

double runLimit(const std::string &fileName, int rows)
{
    rowsInMemory();
    const auto start = std::chrono::steady_clock::now();
    LimitFile file(fileName);
    for (int row = 0; row < rows; row += kRowsPerPage)
        file.addPage(row, std::min(row + kRowsPerPage, rows));
    file.close();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

} // namespace corvane::bench
