#include "hdf5/Hdf5.h"

#include <algorithm>
#include <functional>
#include <utility>

#include "platform/Faults.h"
#include "platform/HostFiles.h"

namespace qnl::hdf5 {
namespace {

constexpr std::uint64_t kTrustedElements = std::uint64_t{1} << 24;
constexpr std::uint64_t kLargestCompression = 1100;  // deflate reaches 1032
constexpr std::uint64_t kLargestAttribute = 64;
constexpr std::size_t kLongestText = std::size_t{1} << 20;
constexpr std::size_t kMostNames = std::size_t{1} << 16;

// Raises std::bad_alloc unless there are so many bytes to be had.
void RequireMemory(std::size_t bytes) {
    std::vector<char> room;
    room.reserve(bytes);
    const char* volatile seen = room.data();  // a reservation that nobody looks at may be left out
    static_cast<void>(seen);
}

// Comes before everything else that is asked of the library: it crashes where it cannot even start.
void Silence() {
    constexpr std::size_t kToStart = std::size_t{1} << 22;
    RequireMemory(kToStart);
    H5Eset_auto2(H5E_DEFAULT, nullptr, nullptr);
}

// What lies at the bottom of the library's last failure.
struct InnermostError {
    std::string words;
    bool wantsMemory = false;
};

herr_t TakeInnermost(unsigned, const H5E_error2_t* error, void* taken) {
    InnermostError& innermost = *static_cast<InnermostError*>(taken);
    if (innermost.words.empty() && error->desc != nullptr) {
        innermost.words = error->desc;
        innermost.wantsMemory = error->maj_num == H5E_RESOURCE;
    }
    return 0;
}

// Words of the library about its last failure; cut to one line. Raises std::bad_alloc when memory ran out: a
// damaged file, too, may ask for more memory than there is, but is to blame only where there is plenty.
std::string LibraryReason(const std::string& what) {
    InnermostError innermost;
    H5Ewalk2(H5E_DEFAULT, H5E_WALK_UPWARD, TakeInnermost, &innermost);
    if (innermost.wantsMemory) {
        constexpr std::size_t kPlenty = std::size_t{1} << 28;
        RequireMemory(kPlenty);
    }
    std::string& reason = innermost.words;
    std::replace(reason.begin(), reason.end(), '\n', ' ');
    return reason.empty() ? what : what + " (" + reason + ")";
}

template <typename T>
hid_t NativeType();
template <>
hid_t NativeType<std::int8_t>() {
    return H5T_NATIVE_INT8;
}
template <>
hid_t NativeType<std::uint8_t>() {
    return H5T_NATIVE_UINT8;
}
template <>
hid_t NativeType<std::int32_t>() {
    return H5T_NATIVE_INT32;
}
template <>
hid_t NativeType<std::int64_t>() {
    return H5T_NATIVE_INT64;
}
template <>
hid_t NativeType<float>() {
    return H5T_NATIVE_FLOAT;
}
template <>
hid_t NativeType<double>() {
    return H5T_NATIVE_DOUBLE;
}

template <typename T>
constexpr ValueKind KindOf() {
    return static_cast<T>(0.5) == T{0} ? ValueKind::Integer : ValueKind::Float;
}

// Without this the library clips values that do not fit, silently.
H5T_conv_ret_t RefuseOverflow(H5T_conv_except_t exception, hid_t, hid_t, void*, void*, void*) {
    const bool overflow = exception == H5T_CONV_EXCEPT_RANGE_HI || exception == H5T_CONV_EXCEPT_RANGE_LOW;
    return overflow ? H5T_CONV_ABORT : H5T_CONV_UNHANDLED;
}

bool IsBacked(std::uint64_t elements, std::size_t valueBytes, std::uint64_t storedBytes) {
    return elements <= kTrustedElements ||
           storedBytes / std::max<std::size_t>(valueBytes, 1) >= elements / kLargestCompression;
}

herr_t TakeName(hid_t, const char* name, const H5L_info_t*, void* names) {
    static_cast<std::vector<std::string>*>(names)->emplace_back(name);
    return 0;
}

std::string AttributeName(const std::string& object, const std::string& name) {
    return "attribute " + name + " of " + object;
}

std::string CutPadding(std::string text, H5T_str_t padding) {
    text.resize(std::min(text.find('\0'), text.size()));
    if (padding == H5T_STR_SPACEPAD) {
        const std::size_t last = text.find_last_not_of(' ');
        text.resize(last == std::string::npos ? 0 : last + 1);
    }
    return text;
}

}  // namespace

Hdf5Error::Hdf5Error(std::string file, std::string object, std::string reason)
    : std::runtime_error(file + ": " + (object.empty() ? "" : object + ": ") + reason),
      file_(std::move(file)),
      object_(std::move(object)),
      reason_(std::move(reason)) {}

Id::Id(Id&& other) noexcept : id_(std::exchange(other.id_, H5I_INVALID_HID)), closer_(other.closer_) {}

Id& Id::operator=(Id&& other) noexcept {
    std::swap(id_, other.id_);
    std::swap(closer_, other.closer_);
    return *this;
}

Id::~Id() {
    Close();
}

bool Id::Close() {
    const hid_t id = std::exchange(id_, H5I_INVALID_HID);
    return id < 0 || closer_(id) >= 0;
}

FileKind Recognise(std::string_view path) {
    Silence();
    const HostFile stream(path, "rb");
    if (!stream) {
        return FileKind::Unreadable;
    }
    return H5Fis_hdf5(HostPath(path).c_str()) > 0 ? FileKind::Hdf5 : FileKind::Other;
}

InputFile::InputFile(std::string_view path) : path_(path) {
    Silence();
    file_ = Id(H5Fopen(HostPath(path).c_str(), H5F_ACC_RDONLY, H5P_DEFAULT), H5Fclose);
    if (!file_) {
        Fail("", LibraryReason("cannot be opened as an HDF5 file"));
    }
}

void InputFile::Fail(const std::string& object, const std::string& reason) const {
    throw Hdf5Error(path_, object, reason);
}

bool InputFile::Exists(const std::string& object) const {
    for (std::size_t end = object.find('/', 1); end != std::string::npos; end = object.find('/', end + 1)) {
        if (H5Lexists(file_.Get(), object.substr(0, end).c_str(), H5P_DEFAULT) <= 0) {
            return false;
        }
    }
    return object == "/" || (H5Lexists(file_.Get(), object.c_str(), H5P_DEFAULT) > 0 &&
                             H5Oexists_by_name(file_.Get(), object.c_str(), H5P_DEFAULT) > 0);
}

std::vector<std::string> InputFile::List(const std::string& group) const {
    const Id id(H5Gopen2(file_.Get(), group.c_str(), H5P_DEFAULT), H5Gclose);
    H5G_info_t info{};
    if (!id || H5Gget_info(id.Get(), &info) < 0) {
        Fail(group, LibraryReason("cannot be opened as a group"));
    }
    if (info.nlinks > kMostNames) {
        Fail(group, "has " + std::to_string(info.nlinks) + " entries");
    }
    std::vector<std::string> names;
    if (H5Literate(id.Get(), H5_INDEX_NAME, H5_ITER_INC, nullptr, TakeName, &names) < 0) {
        Fail(group, LibraryReason("its names cannot be read"));
    }
    return names;
}

Id InputFile::OpenDataset(const std::string& dataset) const {
    Id id(H5Dopen2(file_.Get(), dataset.c_str(), H5P_DEFAULT), H5Dclose);
    if (!id) {
        Fail(dataset, LibraryReason("cannot be opened as a dataset"));
    }
    return id;
}

DatasetInfo InputFile::DescribeOpen(const Id& type, const Id& space, const std::string& object) const {
    const int rank = space ? H5Sget_simple_extent_ndims(space.Get()) : -1;
    if (!type || rank < 0) {
        Fail(object, LibraryReason("its type and shape cannot be read"));
    }
    DatasetInfo info{ValueKind::Other, H5Tget_size(type.Get()), {}, 1, true};
    const H5T_class_t valueClass = H5Tget_class(type.Get());
    if (valueClass == H5T_INTEGER) {
        info.kind = ValueKind::Integer;
    } else if (valueClass == H5T_FLOAT) {
        info.kind = ValueKind::Float;
    }
    std::vector<hsize_t> extents(static_cast<std::size_t>(rank));
    if (rank > 0) {
        H5Sget_simple_extent_dims(space.Get(), extents.data(), nullptr);
    }
    info.shape.assign(extents.begin(), extents.end());
    const hssize_t elements = H5Sget_simple_extent_npoints(space.Get());
    if (elements < 0) {
        Fail(object, LibraryReason("its number of values cannot be read"));
    }
    info.elements = static_cast<std::uint64_t>(elements);
    return info;
}

DatasetInfo InputFile::Describe(const std::string& dataset) const {
    const Id id = OpenDataset(dataset);
    DatasetInfo info =
        DescribeOpen(Id(H5Dget_type(id.Get()), H5Tclose), Id(H5Dget_space(id.Get()), H5Sclose), dataset);
    info.backed = IsBacked(info.elements, info.valueBytes, H5Dget_storage_size(id.Get()));
    return info;
}

template <typename T>
std::vector<T> InputFile::Read(const std::string& dataset, std::uint64_t maxElements) const {
    const Id id = OpenDataset(dataset);
    const DatasetInfo info =
        DescribeOpen(Id(H5Dget_type(id.Get()), H5Tclose), Id(H5Dget_space(id.Get()), H5Sclose), dataset);
    if (info.kind == ValueKind::Other ||
        (KindOf<T>() == ValueKind::Integer && info.kind == ValueKind::Float)) {
        Fail(dataset, KindOf<T>() == ValueKind::Integer ? "expected integers" : "expected numbers");
    }
    if (info.elements > maxElements) {
        Fail(dataset, "expected at most " + std::to_string(maxElements) + " values, found " +
                          std::to_string(info.elements));
    }
    const std::uint64_t stored = H5Dget_storage_size(id.Get());
    if (!IsBacked(info.elements, info.valueBytes, stored)) {
        Fail(dataset, "announces " + std::to_string(info.elements) + " values, but only " +
                          std::to_string(stored) + " bytes are stored");
    }
    std::vector<T> values(static_cast<std::size_t>(info.elements));
    const Id transfer(H5Pcreate(H5P_DATASET_XFER), H5Pclose);
    H5Pset_type_conv_cb(transfer.Get(), RefuseOverflow, nullptr);
    if (!values.empty() &&
        H5Dread(id.Get(), NativeType<T>(), H5S_ALL, H5S_ALL, transfer.Get(), values.data()) < 0) {
        Fail(dataset, LibraryReason("damaged, truncated, or a value that does not fit " +
                                    std::to_string(8 * sizeof(T)) + " bits"));
    }
    return values;
}

bool InputFile::HasAttribute(const std::string& object, const std::string& name) const {
    return Exists(object) && H5Aexists_by_name(file_.Get(), object.c_str(), name.c_str(), H5P_DEFAULT) > 0;
}

Id InputFile::OpenAttribute(const std::string& object, const std::string& name) const {
    if (!HasAttribute(object, name)) {
        Fail(AttributeName(object, name), "missing");
    }
    Id id(H5Aopen_by_name(file_.Get(), object.c_str(), name.c_str(), H5P_DEFAULT, H5P_DEFAULT), H5Aclose);
    if (!id) {
        Fail(AttributeName(object, name), LibraryReason("cannot be opened"));
    }
    return id;
}

template <typename T>
std::vector<T> InputFile::ReadAttribute(const std::string& object, const std::string& name) const {
    const Id id = OpenAttribute(object, name);
    const std::string title = AttributeName(object, name);
    const Id type(H5Aget_type(id.Get()), H5Tclose);
    const DatasetInfo info = DescribeOpen(type, Id(H5Aget_space(id.Get()), H5Sclose), title);
    if (info.kind == ValueKind::Other ||
        (KindOf<T>() == ValueKind::Integer && info.kind == ValueKind::Float)) {
        Fail(title, KindOf<T>() == ValueKind::Integer ? "expected an integer" : "expected a number");
    }
    if (info.elements > kLargestAttribute) {
        Fail(title, "has " + std::to_string(info.elements) + " entries");
    }
    std::vector<T> values(static_cast<std::size_t>(info.elements));
    if (!values.empty() && H5Aread(id.Get(), NativeType<T>(), values.data()) < 0) {
        Fail(title, LibraryReason("cannot be read"));
    }
    if (KindOf<T>() == ValueKind::Integer && !values.empty()) {
        std::vector<std::int64_t> wide(values.size());
        H5Aread(id.Get(), H5T_NATIVE_INT64, wide.data());
        const auto clipped = [](T value, std::int64_t stored) {
            return static_cast<std::int64_t>(value) != stored;
        };
        if (!std::equal(values.begin(), values.end(), wide.begin(), std::not_fn(clipped))) {
            Fail(title, "has a value that does not fit " + std::to_string(8 * sizeof(T)) + " bits");
        }
    }
    return values;
}

template <typename T>
T InputFile::ReadScalar(const std::string& object, const std::string& name) const {
    const std::vector<T> values = ReadAttribute<T>(object, name);
    if (values.size() != 1) {
        Fail(AttributeName(object, name), "expected one value, found " + std::to_string(values.size()));
    }
    return values.front();
}

std::string InputFile::ReadText(const std::string& object, const std::string& name) const {
    const Id id = OpenAttribute(object, name);
    const std::string title = AttributeName(object, name);
    const Id type(H5Aget_type(id.Get()), H5Tclose);
    const Id space(H5Aget_space(id.Get()), H5Sclose);
    if (!type || H5Tget_class(type.Get()) != H5T_STRING || H5Sget_simple_extent_npoints(space.Get()) != 1) {
        Fail(title, "expected one text");
    }
    if (H5Tis_variable_str(type.Get()) > 0) {
        char* stored = nullptr;
        if (H5Aread(id.Get(), type.Get(), &stored) < 0) {
            Fail(title, LibraryReason("cannot be read"));
        }
        std::string text(stored == nullptr ? "" : stored);
        H5free_memory(stored);
        return text;
    }
    const std::size_t size = H5Tget_size(type.Get());
    if (size > kLongestText) {
        Fail(title, "is a text of " + std::to_string(size) + " bytes");
    }
    std::string text(size, '\0');
    if (H5Aread(id.Get(), type.Get(), text.data()) < 0) {
        Fail(title, LibraryReason("cannot be read"));
    }
    return CutPadding(std::move(text), H5Tget_strpad(type.Get()));
}

// Built in memory: nothing of it stands on the disk before Close.
OutputFile::OutputFile(std::string_view path) : path_(path) {
    constexpr std::size_t kGrowth = std::size_t{1} << 20;
    Silence();
    const Id creation(H5Pcreate(H5P_FILE_CREATE), H5Pclose);
    H5Pset_obj_track_times(creation.Get(), false);
    const Id access(H5Pcreate(H5P_FILE_ACCESS), H5Pclose);
    H5Pset_fapl_core(access.Get(), kGrowth, false);
    H5Pset_libver_bounds(access.Get(), H5F_LIBVER_EARLIEST, H5F_LIBVER_V18);
    // The library would first read a file that stands under the name.
    const std::string name = HostPath(path) + "~memory";
    file_ = Id(H5Fcreate(name.c_str(), H5F_ACC_TRUNC, creation.Get(), access.Get()), H5Fclose);
    if (!file_) {
        Fail("", LibraryReason("cannot be created"));
    }
}

void OutputFile::Fail(const std::string& object, const std::string& reason) const {
    throw Hdf5Error(path_, object, reason);
}

void OutputFile::CreateGroup(const std::string& group) {
    const Id creation(H5Pcreate(H5P_GROUP_CREATE), H5Pclose);
    H5Pset_obj_track_times(creation.Get(), false);
    const Id id(H5Gcreate2(file_.Get(), group.c_str(), H5P_DEFAULT, creation.Get(), H5P_DEFAULT), H5Gclose);
    if (!id) {
        Fail(group, LibraryReason("cannot be created"));
    }
}

template <typename T>
void OutputFile::Write(const std::string& dataset, const T* values, const std::vector<std::uint64_t>& shape,
                       unsigned deflate) {
    constexpr std::uint64_t kChunkRows = std::uint64_t{1} << 16;
    std::vector<hsize_t> extents(shape.begin(), shape.end());
    const Id space(H5Screate_simple(static_cast<int>(extents.size()), extents.data(), nullptr), H5Sclose);
    const bool empty = std::find(extents.begin(), extents.end(), hsize_t{0}) != extents.end();
    const Id creation(H5Pcreate(H5P_DATASET_CREATE), H5Pclose);
    H5Pset_obj_track_times(creation.Get(), false);
    if (deflate > 0 && !empty) {
        std::vector<hsize_t> chunk = extents;
        chunk.front() = std::min<hsize_t>(chunk.front(), kChunkRows);
        H5Pset_chunk(creation.Get(), static_cast<int>(chunk.size()), chunk.data());
        H5Pset_shuffle(creation.Get());
        H5Pset_deflate(creation.Get(), deflate);
    }
    Id id(H5Dcreate2(file_.Get(), dataset.c_str(), NativeType<T>(), space.Get(), H5P_DEFAULT, creation.Get(),
                     H5P_DEFAULT),
          H5Dclose);
    const bool stored =
        id && (empty || H5Dwrite(id.Get(), NativeType<T>(), H5S_ALL, H5S_ALL, H5P_DEFAULT, values) >= 0);
    if (!stored || !id.Close()) {
        Fail(dataset, LibraryReason("cannot be written"));
    }
}

void OutputFile::WriteAttribute(const std::string& object, const std::string& name, const Id& type,
                                const Id& space, const void* values) {
    const Id id(H5Acreate_by_name(file_.Get(), object.c_str(), name.c_str(), type.Get(), space.Get(),
                                  H5P_DEFAULT, H5P_DEFAULT, H5P_DEFAULT),
                H5Aclose);
    if (!id || H5Awrite(id.Get(), type.Get(), values) < 0) {
        Fail(AttributeName(object, name), LibraryReason("cannot be written"));
    }
}

template <typename T>
void OutputFile::WriteScalar(const std::string& object, const std::string& name, T value) {
    WriteAttribute(object, name, Id(H5Tcopy(NativeType<T>()), H5Tclose), Id(H5Screate(H5S_SCALAR), H5Sclose),
                   &value);
}

template <typename T>
void OutputFile::WriteArray(const std::string& object, const std::string& name,
                            const std::vector<T>& values) {
    const hsize_t count = values.size();
    WriteAttribute(object, name, Id(H5Tcopy(NativeType<T>()), H5Tclose),
                   Id(H5Screate_simple(1, &count, nullptr), H5Sclose), values.data());
}

void OutputFile::WriteText(const std::string& object, const std::string& name, const std::string& text,
                           Charset charset) {
    const Id type(H5Tcopy(H5T_C_S1), H5Tclose);
    H5Tset_size(type.Get(), std::max<std::size_t>(text.size(), 1));
    H5Tset_strpad(type.Get(), H5T_STR_NULLPAD);
    H5Tset_cset(type.Get(), charset == Charset::Utf8 ? H5T_CSET_UTF8 : H5T_CSET_ASCII);
    WriteAttribute(object, name, type, Id(H5Screate(H5S_SCALAR), H5Sclose), text.c_str());
}

void OutputFile::WriteVariableText(const std::string& object, const std::string& name,
                                   const std::string& text) {
    const Id type(H5Tcopy(H5T_C_S1), H5Tclose);
    H5Tset_size(type.Get(), H5T_VARIABLE);
    H5Tset_cset(type.Get(), H5T_CSET_UTF8);
    const char* value = text.c_str();
    WriteAttribute(object, name, type, Id(H5Screate(H5S_SCALAR), H5Sclose), &value);
}

void OutputFile::Close() {
    const bool flushed = H5Fflush(file_.Get(), H5F_SCOPE_LOCAL) >= 0;
    const ssize_t size = flushed ? H5Fget_file_image(file_.Get(), nullptr, 0) : -1;
    std::vector<char> image(size < 0 ? 0 : static_cast<std::size_t>(size));
    if (image.empty() || H5Fget_file_image(file_.Get(), image.data(), image.size()) != size) {
        const std::string reason = LibraryReason("its content cannot be completed");
        RecordFault({path_, "", "a file that can be written", reason, "free memory and run again"});
        Fail("", reason);
    }
    file_.Close();
    ReplacedFile target(path_, "wb");
    if (target) {
        std::fwrite(image.data(), 1, image.size(), target.Get());
    }
    if (!target.Commit()) {
        Fail("", "cannot be written");
    }
}

template std::vector<std::int8_t> InputFile::Read(const std::string&, std::uint64_t) const;
template std::vector<std::uint8_t> InputFile::Read(const std::string&, std::uint64_t) const;
template std::vector<std::int32_t> InputFile::Read(const std::string&, std::uint64_t) const;
template std::vector<std::int64_t> InputFile::Read(const std::string&, std::uint64_t) const;
template std::vector<float> InputFile::Read(const std::string&, std::uint64_t) const;
template std::vector<double> InputFile::Read(const std::string&, std::uint64_t) const;

template std::vector<std::int32_t> InputFile::ReadAttribute(const std::string&, const std::string&) const;
template std::vector<std::int64_t> InputFile::ReadAttribute(const std::string&, const std::string&) const;
template std::vector<float> InputFile::ReadAttribute(const std::string&, const std::string&) const;
template std::vector<double> InputFile::ReadAttribute(const std::string&, const std::string&) const;
template std::int32_t InputFile::ReadScalar(const std::string&, const std::string&) const;
template std::int64_t InputFile::ReadScalar(const std::string&, const std::string&) const;
template float InputFile::ReadScalar(const std::string&, const std::string&) const;
template double InputFile::ReadScalar(const std::string&, const std::string&) const;

template void OutputFile::Write(const std::string&, const std::int8_t*, const std::vector<std::uint64_t>&,
                                unsigned);
template void OutputFile::Write(const std::string&, const std::uint8_t*, const std::vector<std::uint64_t>&,
                                unsigned);
template void OutputFile::Write(const std::string&, const std::int32_t*, const std::vector<std::uint64_t>&,
                                unsigned);
template void OutputFile::Write(const std::string&, const std::int64_t*, const std::vector<std::uint64_t>&,
                                unsigned);
template void OutputFile::Write(const std::string&, const float*, const std::vector<std::uint64_t>&,
                                unsigned);
template void OutputFile::Write(const std::string&, const double*, const std::vector<std::uint64_t>&,
                                unsigned);
template void OutputFile::WriteScalar(const std::string&, const std::string&, std::int32_t);
template void OutputFile::WriteScalar(const std::string&, const std::string&, std::int64_t);
template void OutputFile::WriteScalar(const std::string&, const std::string&, float);
template void OutputFile::WriteScalar(const std::string&, const std::string&, double);
template void OutputFile::WriteArray(const std::string&, const std::string&,
                                     const std::vector<std::int32_t>&);
template void OutputFile::WriteArray(const std::string&, const std::string&, const std::vector<float>&);
template void OutputFile::WriteArray(const std::string&, const std::string&, const std::vector<double>&);

}  // namespace qnl::hdf5
