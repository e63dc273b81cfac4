#pragma once

#include <hdf5.h>

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

/// The one place that calls the HDF5 library. Paths are the program's Windows-style texts. Every failure
/// is an Hdf5Error; the library itself prints nothing. To be used from one thread at a time.
namespace qnl::hdf5 {

/// What failed: in which file, at which dataset or attribute, and why, in one line.
class Hdf5Error : public std::runtime_error {
public:
    Hdf5Error(std::string file, std::string object, std::string reason);
    const std::string& File() const { return file_; }
    const std::string& Object() const { return object_; }
    const std::string& Reason() const { return reason_; }

private:
    std::string file_;
    std::string object_;
    std::string reason_;
};

/// Owning identifier of the library.
class Id {
public:
    using Closer = herr_t (*)(hid_t);
    Id() = default;
    Id(hid_t id, Closer closer) : id_(id), closer_(closer) {}
    Id(Id&& other) noexcept;
    Id& operator=(Id&& other) noexcept;
    Id(const Id&) = delete;
    Id& operator=(const Id&) = delete;
    ~Id();

    explicit operator bool() const { return id_ >= 0; }
    hid_t Get() const { return id_; }
    /// Closes now; false when the library could not.
    bool Close();

private:
    hid_t id_ = H5I_INVALID_HID;
    Closer closer_ = nullptr;
};

enum class FileKind { Unreadable, Other, Hdf5 };

/// Tells by content what stands at the path.
FileKind Recognise(std::string_view path);

enum class ValueKind { Integer, Float, Other };

struct DatasetInfo {
    ValueKind kind;
    std::size_t valueBytes;
    std::vector<std::uint64_t> shape;  ///< empty for a scalar
    std::uint64_t elements;            ///< product of the shape
    bool backed;                       ///< enough bytes are stored for that many elements
};

/// A file open for reading. Objects are named by absolute path, "/group/dataset".
class InputFile {
public:
    explicit InputFile(std::string_view path);

    const std::string& Path() const { return path_; }
    /// True when every link on the way exists and the object can be reached.
    bool Exists(const std::string& object) const;
    /// Names in a group, in the library's ascending order of names; more than 65,536 are an error.
    std::vector<std::string> List(const std::string& group) const;
    DatasetInfo Describe(const std::string& dataset) const;

    /// All elements of a dataset in storage order. T is int8, uint8, int32, int64, float or double. Floats
    /// are not taken for integers. A value that does not fit T is an error, as are more than maxElements
    /// elements, and more elements than the stored bytes can stand for.
    template <typename T>
    std::vector<T> Read(const std::string& dataset, std::uint64_t maxElements) const;

    bool HasAttribute(const std::string& object, const std::string& name) const;
    /// All entries of a numeric attribute, at most 64; T is int32, int64, float or double.
    template <typename T>
    std::vector<T> ReadAttribute(const std::string& object, const std::string& name) const;
    /// The value of a numeric attribute with exactly one entry.
    template <typename T>
    T ReadScalar(const std::string& object, const std::string& name) const;
    /// A text attribute of fixed or variable length, without its padding.
    std::string ReadText(const std::string& object, const std::string& name) const;

private:
    [[noreturn]] void Fail(const std::string& object, const std::string& reason) const;
    Id OpenDataset(const std::string& dataset) const;
    Id OpenAttribute(const std::string& object, const std::string& name) const;
    DatasetInfo DescribeOpen(const Id& type, const Id& space, const std::string& object) const;

    std::string path_;
    Id file_;
};

enum class Charset { Ascii, Utf8 };

/// A file being written, from empty. It is put together in memory and appears under its name at Close and
/// not before; without Close, or when Close fails, an earlier file of that name stays whole. Object times
/// are not stored, so that equal contents give equal bytes.
class OutputFile {
public:
    explicit OutputFile(std::string_view path);

    void CreateGroup(const std::string& group);
    /// A dataset with the product of `shape` values. `deflate` 0 stores it plain, 1 to 9 shuffled and
    /// deflated. T as for InputFile::Read.
    template <typename T>
    void Write(const std::string& dataset, const T* values, const std::vector<std::uint64_t>& shape,
               unsigned deflate = 0);
    /// A scalar attribute; T is int32, int64, float or double.
    template <typename T>
    void WriteScalar(const std::string& object, const std::string& name, T value);
    /// An attribute with one axis.
    template <typename T>
    void WriteArray(const std::string& object, const std::string& name, const std::vector<T>& values);
    /// A text of fixed length, null-padded; an empty text takes one byte.
    void WriteText(const std::string& object, const std::string& name, const std::string& text,
                   Charset charset = Charset::Utf8);
    /// A text of variable length, UTF-8.
    void WriteVariableText(const std::string& object, const std::string& name, const std::string& text);
    /// Writes the file and puts it in place; raises Hdf5Error (with a fault recorded) when that fails.
    void Close();

private:
    [[noreturn]] void Fail(const std::string& object, const std::string& reason) const;
    void WriteAttribute(const std::string& object, const std::string& name, const Id& type, const Id& space,
                        const void* values);

    std::string path_;
    Id file_;
};

}  // namespace qnl::hdf5
