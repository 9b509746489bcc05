#pragma once

// VDBinaryFile: reads and writes simple binary files of ints, floats, strings, arrays
// and bit arrays, each as the raw in-memory image in the machine's byte order. Arrays
// and strings stand behind a 32-bit count; the byte-sized and 16-bit layouts are padded
// with zero bytes to a multiple of 4 after the count:
//
//   int, float                          4 bytes
//   VDArray<int>, VDArray<unsigned>     count, count x 4 bytes
//   VDArray<VDVector2f> / <VDVector3f>  count, count x 8 / 12 bytes
//   VDArray<unsigned short>             count, count x 2 bytes, pad
//   VDArray<unsigned char>              count, count bytes, pad
//   VDString                            count = length + 1, the characters and a 0, pad
//                                       (an empty string: count 1, then 4 zero bytes)
//   VDBoolArray                         as VDArray<unsigned char>, one 0/1 byte per bit
//
// Every operation is false, and touches nothing, when no file is open. A count read from
// a file is trusted only as far as the file goes: a negative count, or one whose data
// would not fit in the bytes left, makes the read false with the target left empty and
// nothing allocated. A short transfer otherwise makes the operation false and leaves
// what was already transferred.

#include "foundation/export.h"
#include "foundation/vd_array.h"
#include "foundation/vd_bool_array.h"
#include "foundation/vd_string.h"
#include "foundation/vd_vector.h"

#include <cstddef>
#include <cstdio>

class NEQBRIDGE_API VDBinaryFile {
  public:
    VDBinaryFile() = default;
    VDBinaryFile(const VDString& path, const char* mode) { open(path, mode); }
    VDBinaryFile(const VDBinaryFile&) = delete;
    VDBinaryFile& operator=(const VDBinaryFile&) = delete;
    ~VDBinaryFile() { close(); }

    // Closes any open file, then opens path with the C stream mode (through
    // VDDiskServer::fileOpen: a mode that reads takes regular files only, since on a
    // device such as /dev/zero every read would "succeed"). True when a stream was
    // obtained.
    bool open(const VDString& path, const char* mode);
    void close();
    bool isOpen() const;

    bool read(int& value);
    bool read(float& value);
    bool write(int value);
    bool write(float value);

    bool read(VDArray<int>& values);
    bool read(VDArray<unsigned int>& values);
    bool read(VDArray<VDVector2f>& values);
    bool read(VDArray<VDVector3f>& values);
    bool read(VDArray<unsigned short>& values);
    bool read(VDArray<unsigned char>& values);
    bool read(VDString& text);
    bool read(VDBoolArray& bits);

    bool write(const VDArray<int>& values);
    bool write(const VDArray<unsigned int>& values);
    bool write(const VDArray<VDVector2f>& values);
    bool write(const VDArray<VDVector3f>& values);
    bool write(const VDArray<unsigned short>& values);
    bool write(const VDArray<unsigned char>& values);
    bool write(const VDString& text);
    bool write(const VDBoolArray& bits);

    // The characters alone: no count, terminator or pad.
    bool writeAsciiString(const VDString& text);

    // Skip / write (as zeros) the pad bytes that follow n data bytes, one byte at a time;
    // false when any byte failed, though every byte is tried.
    bool readAlignData(int n);
    bool writeAlignData(int n);

  private:
    // A count read from the file, checked against the bytes left for its data.
    bool readCount(int& count, long long elementSize);
    template <class T> NEQBRIDGE_HIDDEN bool readArray(VDArray<T>& values, bool padded);
    template <class T> NEQBRIDGE_HIDDEN bool writeArray(const VDArray<T>& values, bool padded);
    bool writeCounted(const void* data, std::size_t count, int elementSize, bool padded);
    bool readBytes(void* data, long long size);
    bool writeBytes(const void* data, long long size);

    std::FILE* m_file = nullptr;
};
