// Everything else of the stub platform. The writer tells each call on standard output, which is what the
// test looks at.

#include <iostream>
#include <utility>

#include "platform/CQNL3DResultReader_Manipulator.h"
#include "platform/CQNL3DResultWriter_Manipulator.h"
#include "platform/CQNLCom.h"
#include "platform/CQNLKNLogErrMsgTool.h"
#include "platform/Faults.h"
#include "platform/HostFiles.h"
#include "platform/QnlMaterial.h"

int CQNLCom::Init(bool, int&, int&, int, char**, int) {
    return 1;
}
double CQNLCom::Time() const {
    return 0.0;
}

CQNLKNLogErrMsgTool::CQNLKNLogErrMsgTool() = default;
CQNLKNLogErrMsgTool::~CQNLKNLogErrMsgTool() = default;
int CQNLKNLogErrMsgTool::setData_Append(const char*) {
    return 1;
}
void CQNLKNLogErrMsgTool::printGeneralMessage(const std::string& text, const std::string&,
                                              std::ostream& out) {
    out << text;
}
void CQNLKNLogErrMsgTool::printLogStringContent(const std::string& text, const std::string&,
                                                std::ostream& out) {
    out << text << "\n";
}
void CQNLKNLogErrMsgTool::printErrorMessageContent(int code, const std::string& text, const std::string&,
                                                   std::ostream& out) {
    out << code << " " << text;
}
void CQNLKNLogErrMsgTool::printErrorOutofMemory(const std::string&, std::ostream& out) {
    out << "exception\n";
}

void qnl::RecordFault(qnl::Fault) {}
std::vector<qnl::Fault> qnl::TakeFaults() {
    return {};
}

std::string HostPath(std::string_view path) {
    std::string host(path);
    for (char& character : host) {
        character = character == '\\' ? '/' : character;
    }
    return host;
}
qnl::HostFile::HostFile(std::string_view path, const char* mode)
    : stream_(std::fopen(HostPath(path).c_str(), mode)) {}
qnl::HostFile::HostFile(qnl::HostFile&& other) noexcept : stream_(std::exchange(other.stream_, nullptr)) {}
qnl::HostFile& qnl::HostFile::operator=(qnl::HostFile&& other) noexcept {
    std::swap(stream_, other.stream_);
    return *this;
}
qnl::HostFile::~HostFile() {
    Close();
}
bool qnl::HostFile::Close() {
    std::FILE* stream = std::exchange(stream_, nullptr);
    return stream == nullptr || std::fclose(stream) == 0;
}
bool qnl::ReadAll(std::FILE* stream, std::string& content) {
    for (int character = std::fgetc(stream); character != EOF; character = std::fgetc(stream)) {
        content += static_cast<char>(character);
    }
    return true;
}
bool qnl::ReadAll(std::FILE* stream, qnl::FileContent& content) {
    std::string text;
    qnl::ReadAll(stream, text);
    content.bytes = std::make_unique<char[]>(text.size() + 1);
    content.size = text.copy(content.bytes.get(), text.size());
    return true;
}
bool qnl::IsOlder(std::string_view, std::string_view) {
    return false;
}
qnl::ReplacedFile::ReplacedFile(std::string_view, const char*) {}
qnl::ReplacedFile::~ReplacedFile() = default;
bool qnl::ReplacedFile::Commit() {
    return false;
}

QnlMaterial* QnlGetMaterial(const char*) {
    static QnlMaterial material{};
    return &material;
}
bool QnlIsThermoplastic(const QnlMaterial*) {
    return true;
}
bool QnlIsThermoset(const QnlMaterial*) {
    return false;
}
double QnlGetFreezeTemp(const QnlMaterial*) {
    return 100.0;
}
double QnlGetDensity(const QnlMaterial*, double, double, double) {
    return 1.0;
}
void QnlReleaseMaterial(QnlMaterial*) {}

struct CQNL3DResultReader_Manipulator::State {};
CQNL3DResultReader_Manipulator::CQNL3DResultReader_Manipulator() = default;
CQNL3DResultReader_Manipulator::~CQNL3DResultReader_Manipulator() = default;
int CQNL3DResultReader_Manipulator::BeginReading(const char*, const char*) {
    return 0;
}
int CQNL3DResultReader_Manipulator::GetResultVersion() {
    return 1;
}
void CQNL3DResultReader_Manipulator::GetHeadInfo(int&, int&, char*, char*, char*, int&, int& itemCount) {
    itemCount = 0;
}
void CQNL3DResultReader_Manipulator::GetResultItemInfo(int*, char**, char**, int*) {}
int CQNL3DResultReader_Manipulator::GetMaxCavityNode() {
    return 4;
}
int CQNL3DResultReader_Manipulator::GetMaxCavityElem() {
    return 0;
}
bool CQNL3DResultReader_Manipulator::GetResultItem(int item, float* values) {
    constexpr int kTemperature = 6;
    for (int v = 1; v <= 4 && item == kTemperature; ++v) {
        values[v] = 60.0F;
    }
    return item == kTemperature;
}
bool CQNL3DResultReader_Manipulator::GetResultDataIDMap(QNLRESULTTYPE) {
    return false;
}
bool CQNL3DResultReader_Manipulator::GetResultDataIDArray(QNLRESULTTYPE, int*) {
    return false;
}
void CQNL3DResultReader_Manipulator::EndReading() {}

qnl::FileDigest qnl::DigestOf(std::string_view) {
    return {};
}
void qnl::SetResultOrigin(CQNL3DResultWriter_Manipulator&, qnl::ResultOrigin) {}

struct CQNL3DResultWriter_Manipulator::State {};
CQNL3DResultWriter_Manipulator::CQNL3DResultWriter_Manipulator() = default;
CQNL3DResultWriter_Manipulator::~CQNL3DResultWriter_Manipulator() = default;
int CQNL3DResultWriter_Manipulator::BeginWriting(const char* path, const char*, bool) {
    std::cout << "stub writer: begin " << path << "\n";
    return 1;
}
bool CQNL3DResultWriter_Manipulator::SetHeadInfo(int code, int stamp, const char*, const char*, const char*,
                                                 int flag, int items) {
    std::cout << "stub writer: head " << code << " " << stamp << " " << flag << " items " << items << "\n";
    return true;
}
bool CQNL3DResultWriter_Manipulator::SetFileInfo(const char*, int, int, int) {
    return true;
}
bool CQNL3DResultWriter_Manipulator::SetMultipleTimeStepOutputInfo(int, float*, char**) {
    return true;
}
bool CQNL3DResultWriter_Manipulator::SetResultTypeInfo(int, int, int, int, int, int, int, int) {
    return true;
}
bool CQNL3DResultWriter_Manipulator::SetResultDataIDMap(QNLRESULTTYPE, bool) {
    return true;
}
bool CQNL3DResultWriter_Manipulator::SetResultItemInfo(int*, char**, char**, int*) {
    return true;
}
bool CQNL3DResultWriter_Manipulator::SetMaxMinInfo(float*, float*) {
    return true;
}
bool CQNL3DResultWriter_Manipulator::WriteResultDataIDArray(QNLRESULTTYPE, int*) {
    return true;
}
bool CQNL3DResultWriter_Manipulator::WriteResultItem(int id, float* values) {
    std::cout << "stub writer: item " << id << " first value " << values[1] << "\n";
    return true;
}
bool CQNL3DResultWriter_Manipulator::EndWriting() {
    std::cout << "stub writer: end\n";
    return true;
}
