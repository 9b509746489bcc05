#include "foundation/vd_binary_file.h"

#include "foundation/vd_disk_server.h"

#include <sys/types.h>

#include <climits>
#include <vector>

static_assert(sizeof(int) == 4 && sizeof(float) == 4, "4-byte int and float");
static_assert(sizeof(VDVector2f) == 8 && sizeof(VDVector3f) == 12, "packed vectors");

namespace {

// Pad bytes after n data bytes: up to the next multiple of 4.
int padAfter(long long n) {
    return static_cast<int>((4 - n % 4) % 4);
}

} // namespace

bool VDBinaryFile::open(const VDString& path, const char* mode) {
    close();
    m_file = VDDiskServer::fileOpen(path, VDString(mode));
    return isOpen();
}

void VDBinaryFile::close() {
    if (isOpen()) std::fclose(m_file);
    m_file = VDDiskServer::s_invalidFile;
}

bool VDBinaryFile::isOpen() const {
    return m_file != VDDiskServer::s_invalidFile;
}

bool VDBinaryFile::readBytes(void* data, long long size) {
    const auto n = static_cast<std::size_t>(size);
    return std::fread(data, 1, n, m_file) == n;
}

bool VDBinaryFile::writeBytes(const void* data, long long size) {
    const auto n = static_cast<std::size_t>(size);
    return std::fwrite(data, 1, n, m_file) == n;
}

bool VDBinaryFile::read(int& value) {
    return isOpen() && readBytes(&value, sizeof value);
}

bool VDBinaryFile::read(float& value) {
    return isOpen() && readBytes(&value, sizeof value);
}

bool VDBinaryFile::write(int value) {
    return isOpen() && writeBytes(&value, sizeof value);
}

bool VDBinaryFile::write(float value) {
    return isOpen() && writeBytes(&value, sizeof value);
}

bool VDBinaryFile::readAlignData(int n) {
    if (!isOpen()) return false;
    bool ok = true;
    for (int i = padAfter(n); i > 0; --i)
        ok = std::fgetc(m_file) != EOF && ok;
    return ok;
}

bool VDBinaryFile::writeAlignData(int n) {
    if (!isOpen()) return false;
    bool ok = true;
    for (int i = padAfter(n); i > 0; --i)
        ok = std::fputc(0, m_file) != EOF && ok;
    return ok;
}

bool VDBinaryFile::readCount(int& count, long long elementSize) {
    if (!read(count)) return false;
    if (count < 0) return false;
    const off_t position = ::ftello(m_file);
    const long long left = position < 0 ? 0 : VDDiskServer::fileSize(m_file) - position;
    return static_cast<long long>(count) * elementSize <= left;
}

template <class T> bool VDBinaryFile::readArray(VDArray<T>& values, bool padded) {
    if (!isOpen()) return false;
    int count = 0;
    if (!readCount(count, sizeof(T))) {
        values.clear();
        return false;
    }
    values.reinit(count, T());
    const long long bytes = static_cast<long long>(count) * sizeof(T);
    const bool ok = readBytes(values.data(), bytes);
    return (padded ? readAlignData(static_cast<int>(bytes)) : true) && ok;
}

bool VDBinaryFile::writeCounted(const void* data, std::size_t count, int elementSize, bool padded) {
    if (!isOpen() || count > static_cast<std::size_t>(INT_MAX)) return false;
    const long long bytes = static_cast<long long>(count) * elementSize;
    bool ok = write(static_cast<int>(count));
    ok = writeBytes(data, bytes) && ok;
    return (padded ? writeAlignData(static_cast<int>(bytes)) : true) && ok;
}

template <class T> bool VDBinaryFile::writeArray(const VDArray<T>& values, bool padded) {
    return writeCounted(values.data(), values.size(), sizeof(T), padded);
}

bool VDBinaryFile::read(VDArray<int>& values) {
    return readArray(values, false);
}
bool VDBinaryFile::read(VDArray<unsigned int>& values) {
    return readArray(values, false);
}
bool VDBinaryFile::read(VDArray<VDVector2f>& values) {
    return readArray(values, false);
}
bool VDBinaryFile::read(VDArray<VDVector3f>& values) {
    return readArray(values, false);
}
bool VDBinaryFile::read(VDArray<unsigned short>& values) {
    return readArray(values, true);
}
bool VDBinaryFile::read(VDArray<unsigned char>& values) {
    return readArray(values, true);
}

bool VDBinaryFile::write(const VDArray<int>& values) {
    return writeArray(values, false);
}
bool VDBinaryFile::write(const VDArray<unsigned int>& values) {
    return writeArray(values, false);
}
bool VDBinaryFile::write(const VDArray<VDVector2f>& values) {
    return writeArray(values, false);
}
bool VDBinaryFile::write(const VDArray<VDVector3f>& values) {
    return writeArray(values, false);
}
bool VDBinaryFile::write(const VDArray<unsigned short>& values) {
    return writeArray(values, true);
}
bool VDBinaryFile::write(const VDArray<unsigned char>& values) {
    return writeArray(values, true);
}

bool VDBinaryFile::read(VDString& text) {
    if (!isOpen()) return false;
    int count = 0;
    if (!readCount(count, 1)) {
        text.clear();
        return false;
    }
    // The characters and their terminator; the string ends at the first 0 byte.
    std::vector<char> characters(static_cast<std::size_t>(count) + 1, '\0');
    const std::size_t got =
        std::fread(characters.data(), 1, static_cast<std::size_t>(count), m_file);
    text.set(characters.data());
    return readAlignData(count) && got == static_cast<std::size_t>(count);
}

bool VDBinaryFile::write(const VDString& text) {
    // Null and empty alike: count 1, the terminator, 3 pad bytes.
    return writeCounted(text.c_str(), static_cast<std::size_t>(text.length()) + 1, 1, true);
}

bool VDBinaryFile::read(VDBoolArray& bits) {
    if (!isOpen()) return false;
    VDArray<unsigned char> bytes;
    const bool ok = read(bytes);
    bits.reinit(static_cast<int>(bytes.size()), false);
    for (int i = 0; i < bits.getSize(); ++i)
        if (bytes[i] != 0) bits.set(i);
    return ok;
}

bool VDBinaryFile::write(const VDBoolArray& bits) {
    if (!isOpen()) return false;
    VDArray<unsigned char> bytes(static_cast<std::size_t>(bits.getSize()), 0);
    for (int i = bits.findFirst(true); i >= 0; i = bits.findFirst(true, i + 1))
        bytes[i] = 1;
    return writeArray(bytes, true);
}

bool VDBinaryFile::writeAsciiString(const VDString& text) {
    return isOpen() && writeBytes(text.c_str(), text.length());
}
