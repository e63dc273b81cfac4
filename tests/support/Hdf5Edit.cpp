#include "support/Hdf5Edit.h"

#include <hdf5.h>

#include <stdexcept>

namespace hdf5_edit {
namespace {

class Handle {
public:
    Handle(hid_t id, herr_t (*closer)(hid_t), const std::string& what) : id_(id), closer_(closer) {
        if (id < 0) {
            throw std::runtime_error("cannot open " + what);
        }
    }
    ~Handle() { closer_(id_); }
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;
    operator hid_t() const { return id_; }  // NOLINT(google-explicit-constructor): stands for the id

private:
    hid_t id_;
    herr_t (*closer_)(hid_t);
};

void Check(herr_t status, const std::string& what) {
    if (status < 0) {
        throw std::runtime_error("cannot change " + what);
    }
}

Handle OpenFile(const std::string& file) {
    return {H5Fopen(file.c_str(), H5F_ACC_RDWR, H5P_DEFAULT), H5Fclose, file};
}

void PutAttribute(const std::string& file, const std::string& object, const std::string& name, hid_t type,
                  const void* value) {
    const Handle id = OpenFile(file);
    const Handle owner(H5Oopen(id, object.c_str(), H5P_DEFAULT), H5Oclose, object);
    if (H5Aexists(owner, name.c_str()) > 0) {
        Check(H5Adelete(owner, name.c_str()), name);
    }
    const Handle space(H5Screate(H5S_SCALAR), H5Sclose, name);
    const Handle attribute(H5Acreate2(owner, name.c_str(), type, space, H5P_DEFAULT, H5P_DEFAULT), H5Aclose,
                           name);
    Check(H5Awrite(attribute, type, value), name);
}

void PutDataset(const std::string& file, const std::string& object, hid_t type,
                const std::vector<hsize_t>& shape, const void* values, bool chunked) {
    const Handle id = OpenFile(file);
    if (H5Lexists(id, object.c_str(), H5P_DEFAULT) > 0) {
        Check(H5Ldelete(id, object.c_str(), H5P_DEFAULT), object);
    }
    const Handle space(H5Screate_simple(static_cast<int>(shape.size()), shape.data(), nullptr), H5Sclose,
                       object);
    const Handle creation(H5Pcreate(H5P_DATASET_CREATE), H5Pclose, object);
    if (chunked) {
        const hsize_t chunk = 1024;
        Check(H5Pset_chunk(creation, 1, &chunk), object);
    }
    const Handle dataset(H5Dcreate2(id, object.c_str(), type, space, H5P_DEFAULT, creation, H5P_DEFAULT),
                         H5Dclose, object);
    if (values != nullptr) {
        Check(H5Dwrite(dataset, type, H5S_ALL, H5S_ALL, H5P_DEFAULT, values), object);
    }
}

herr_t CopyOne(hid_t from, const char* name, const H5A_info_t*, void* target) {
    const Handle source(H5Aopen(from, name, H5P_DEFAULT), H5Aclose, name);
    const Handle type(H5Aget_type(source), H5Tclose, name);
    const Handle space(H5Aget_space(source), H5Sclose, name);
    const Handle copy(H5Acreate2(*static_cast<hid_t*>(target), name, type, space, H5P_DEFAULT, H5P_DEFAULT),
                      H5Aclose, name);
    std::vector<char> value(H5Tget_size(type));
    Check(H5Aread(source, type, value.data()), name);
    Check(H5Awrite(copy, type, value.data()), name);
    if (H5Tis_variable_str(type) > 0) {
        Check(H5Dvlen_reclaim(type, space, H5P_DEFAULT, value.data()), name);
    }
    return 0;
}

}  // namespace

void DeleteAttribute(const std::string& file, const std::string& object, const std::string& name) {
    const Handle id = OpenFile(file);
    Check(H5Adelete_by_name(id, object.c_str(), name.c_str(), H5P_DEFAULT), name);
}

void DeleteObject(const std::string& file, const std::string& object) {
    const Handle id = OpenFile(file);
    Check(H5Ldelete(id, object.c_str(), H5P_DEFAULT), object);
}

void PutInteger(const std::string& file, const std::string& object, const std::string& name,
                long long value) {
    PutAttribute(file, object, name, H5T_NATIVE_LLONG, &value);
}

void PutReal(const std::string& file, const std::string& object, const std::string& name, double value) {
    PutAttribute(file, object, name, H5T_NATIVE_DOUBLE, &value);
}

void PutText(const std::string& file, const std::string& object, const std::string& name,
             const std::string& text) {
    const Handle type(H5Tcopy(H5T_C_S1), H5Tclose, name);
    Check(H5Tset_size(type, text.size() + 1), name);
    PutAttribute(file, object, name, type, text.c_str());
}

void PutFloats(const std::string& file, const std::string& object, const std::vector<float>& values,
               int axes) {
    std::vector<hsize_t> shape(static_cast<std::size_t>(axes), 1);
    shape.back() = values.size();
    PutDataset(file, object, H5T_NATIVE_FLOAT, shape, values.data(), false);
}

void PutIntegers(const std::string& file, const std::string& object, const std::vector<long long>& values) {
    PutDataset(file, object, H5T_NATIVE_LLONG, {values.size()}, values.data(), false);
}

void PutStrings(const std::string& file, const std::string& object, std::size_t count) {
    const Handle type(H5Tcopy(H5T_C_S1), H5Tclose, object);
    Check(H5Tset_size(type, 4), object);
    const std::vector<char> texts(4 * count, '1');
    PutDataset(file, object, type, {count}, texts.data(), false);
}

void PutUnstored(const std::string& file, const std::string& object, unsigned long long length) {
    PutDataset(file, object, H5T_NATIVE_FLOAT, {length}, nullptr, true);
}

void CopyAttributes(const std::string& file, const std::string& from, const std::string& to) {
    const Handle id = OpenFile(file);
    const Handle source(H5Oopen(id, from.c_str(), H5P_DEFAULT), H5Oclose, from);
    const Handle target(H5Oopen(id, to.c_str(), H5P_DEFAULT), H5Oclose, to);
    hid_t targetId = target;
    Check(H5Aiterate2(source, H5_INDEX_NAME, H5_ITER_INC, nullptr, CopyOne, &targetId), to);
}

}  // namespace hdf5_edit
