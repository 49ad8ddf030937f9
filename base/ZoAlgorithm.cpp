#include "base/ZoAlgorithm.h"

#include "base/ZoClassSerialization.h"
#include "base/ZoStreamWriteBinaryFile.h"
#include "base/ZoUniqueID.h"
#include "platform/ZoOS.h"

#include <memory>

ZO_IMPLEMENT_RTTI_BASE(ZoAlgorithm, ZoUnitTest, nullptr, nullptr);

ZoAlgorithm::ZoAlgorithm() : m_initialized(0), m_calculated(0)
{
}

ZoAlgorithm::~ZoAlgorithm() = default;

int ZoAlgorithm::Init()
{
    if (m_initialized)
        return 1;
    const int ready = checkInitData();
    if (!ready)
        return ready;
    int done = 0;
    try {
        done = init();
    } catch (...) {
        ZoOS::RethrowThreadCancellation();
        done = 0;
    }
    if (done)
        m_initialized = 1;
    return done;
}

CString ZoAlgorithm::recordingPath()
{
    CString id;
    if (!m_uniqueId.IsEmpty()) {
        id = m_uniqueId;
        m_uniqueId.Empty();
    } else {
        id = ZoUniqueID::GetUniqueID();
    }
    return GetRecordingFolder(GetClassNameW()) + id + CString(u".dat");
}

int ZoAlgorithm::Compute()
{
    std::unique_ptr<ZoStreamWriteBinaryFile> recording;
    if (m_flags.IsOneFlagSet(eRecordUnitTest)) {
        try {
            recording.reset(new ZoStreamWriteBinaryFile(recordingPath()));
            serializeUnitTestInput(*recording);
        } catch (...) {
            // A recording is a by-product: without it the computation still runs.
            ZoOS::RethrowThreadCancellation();
            recording.reset();
        }
    }
    if (Init() && checkParameters() && checkInputData()) {
        try {
            m_calculated = compute();
        } catch (...) {
            ZoOS::RethrowThreadCancellation();
            m_calculated = 0;
        }
        if (recording) {
            try {
                serializeUnitTestOutput(*recording);
                recording->Close();
            } catch (...) {
                ZoOS::RethrowThreadCancellation();
            }
        }
        return m_calculated;
    }
    return 0;
}

ZoUnitTest::EResult ZoAlgorithm::runUnitTest()
{
    // The recorded case is run afresh, without recording it again.
    const ZoFlags<EFlags> flags = m_flags;
    m_flags.RemoveFlags(eRecordUnitTest);
    m_calculated = 0;
    const int computed = Compute();
    m_flags = flags;
    (void)computed;
    return compareResult() ? eResultSucceeded : eResultFailed;
}

void ZoAlgorithm::releaseUnitTestInput()
{
}

void ZoAlgorithm::releaseUnitTestOutput()
{
}

void ZoAlgorithm::onReadOldFlags(uint32_t)
{
}

int ZoAlgorithm::checkInitData() const
{
    return 1;
}

int ZoAlgorithm::init()
{
    return 1;
}

int ZoAlgorithm::checkParameters() const
{
    return 1;
}

int ZoAlgorithm::compareResult() const
{
    return 1;
}

int ZoAlgorithm::Serialize(ZoStreamReadBinary& stream)
{
    stream.ReadAndCompareVersion(0);
    uint32_t flags = 0;
    stream >> flags;
    onReadOldFlags(flags);
    m_flags = ZoFlags<EFlags>(flags);
    return 1;
}

int ZoAlgorithm::Serialize(ZoStreamWriteBinary& stream) const
{
    stream.WriteVersion(0);
    stream << m_flags.GetFlags();
    return 1;
}
