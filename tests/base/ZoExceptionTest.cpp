#include "base/ZoAssertDialog.h"
#include "base/ZoException.h"
#include "base/ZoExceptionContainer.h"
#include "base/ZoExceptionIllegalInputData.h"
#include "base/ZoExceptionPreconditionViolation.h"
#include "base/ZoExceptionStream.h"
#include "base/ZoExceptionWrongFileVersion.h"
#include "base/ZoLatestError.h"
#include "platform/ZoOS.h"

#include <gtest/gtest.h>

#include <cstring>

namespace {

const char kFrame[] = "=============================================\n";

// Exposes the protected report pieces the way an application's own subclass would use them.
class ReportingException : public ZoException
{
public:
    using ZoException::ZoException;
    CString Header(int framed) const
    {
        CString text;
        setMsgHeader(text, framed);
        return text;
    }
    CString Footer(int framed) const
    {
        CString text;
        setMsgFooter(text, framed);
        return text;
    }
};

TEST(ZoExceptionTest, TracesAreFramedAndEachSubclassNamesItselfExceptTheStreamAndVersionOnes)
{
    const ZoExceptionStream stream(u"..\\base\\ZoStreamReadBinary.cpp", u"ZoStreamReadBinary", u"readStringLength", 346);
    EXPECT_EQ(stream.GetTraceString().ToUtf8(), std::string(kFrame) +
                                                    "EXCEPTION: ZoException\n\n"
                                                    "   - Throwing class:\t\tZoStreamReadBinary\n"
                                                    "   - Throwing method:\treadStringLength\n"
                                                    "   - Code line:\t\t346\n");
    EXPECT_EQ(stream.Where().ToUtf8(), "..\\base\\ZoStreamReadBinary.cpp(346):");
    const CString f(u"f"), c(u"C"), m(u"m");
    const std::pair<ZoException, const char*> cases[] = {
        {ZoException(f, c, m, 1), "ZoException"},
        {ZoExceptionStream(f, c, m, 1), "ZoException"},
        {ZoExceptionWrongFileVersion(f, c, m, 1), "ZoException"},
        {ZoExceptionContainer(f, c, m, 1), "ZoExceptionContainer"},
        {ZoExceptionIllegalInputData(f, c, m, 1), "ZoExceptionIllegalInputData"},
        {ZoExceptionPreconditionViolation(f, c, m, 1), "ZoExceptionPreconditionViolation"},
    };
    for (const auto& [exception, name] : cases) {
        EXPECT_EQ(exception.GetExceptionName().ToUtf8(), name);
        EXPECT_EQ(exception.GetTraceString().ToUtf8().substr(sizeof(kFrame) - 1, 11 + std::strlen(name) + 1),
                  std::string("EXCEPTION: ") + name + "\n");
        EXPECT_EQ(exception.GetExceptionType(), 0xFFFFFFFFu);
    }
}

TEST(ZoExceptionTest, ReportPiecesOmitWhatIsUnknownAndCopiesKeepEveryField)
{
    EXPECT_EQ(ReportingException(u"", u"", u"", 0xFFFFFFFFu).Header(0).ToUtf8(), "EXCEPTION: ZoException\n");
    // An exception whose name was given empty says only that it is one.
    EXPECT_EQ(ReportingException(u"", u"", u"", 0xFFFFFFFFu, CString()).Header(0).ToUtf8(), "ZoException\n");
    // The footer closes a parenthesis it never opened when the line is unknown.
    EXPECT_EQ(ReportingException(u"a.cpp", u"", u"", 0xFFFFFFFFu).Footer(0).ToUtf8(), "a.cpp)\n");
    EXPECT_EQ(ReportingException(u"a.cpp", u"", u"", 12).Footer(0).ToUtf8(), "a.cpp(12) : Stelle im Code\n");
    EXPECT_EQ(ReportingException(u"a.cpp", u"", u"", 12).Footer(1).ToUtf8(),
              "\na.cpp(12) : Stelle im Code\n" + std::string(kFrame));
    EXPECT_EQ(ReportingException(u"", u"", u"", 12).Footer(1).ToUtf8(), kFrame);
    EXPECT_EQ(ReportingException(u"", u"", u"", 12).Footer(0).ToUtf8(), "");
    EXPECT_EQ(ZoException(u"a", u"", u"", 7).Where().ToUtf8(), "a(7):");
    // An unknown line is the all-ones word printed with %d.
    EXPECT_EQ(ZoException(u"a", u"", u"", 0xFFFFFFFFu).Where().ToUtf8(), "a(-1):");
    // Typed constructors keep their code, and copies every field.
    const ZoException typed(42, u"f.cpp", u"C", u"m", 9, u"Custom");
    ZoException copy(u"", u"", u"", 0);
    copy = typed;
    EXPECT_EQ(copy.GetExceptionType(), 42u);
    EXPECT_EQ(copy.Where() + copy.GetExceptionName() + copy.GetThrowingClassName() + copy.GetThrowingMethodName(),
              CString(u"f.cpp(9):CustomCm"));
    EXPECT_EQ(ZoException(7, u"f", u"c", u"m", 1).GetExceptionName(), CString(u"ZoException"));
}

TEST(ZoLatestErrorTest, CapturesTheNumberAndTheSystemText)
{
    const uint32_t code = ZoOS::GetErrorText(2).IsEmpty() ? 1 : 2;
    ZoOS::SetLastErrorCode(code);
    ZoLatestError error;
    EXPECT_TRUE(error.IsError() && error.GetLatestErrorNumber() == code);
    const CString& text = error.GetLatestErrorMessage();
    ASSERT_GT(text.GetLength(), 1);
    EXPECT_EQ(text[text.GetLength() - 1], u'\n');
    ZoOS::SetLastErrorCode(0);
    error.Update();
    EXPECT_FALSE(error.IsError());
}

TEST(ZoAssertDialogTest, ReportsFileLineAndExpressionThenFollowsThePolicy)
{
    EXPECT_EQ(ZoAssertDialog::FormatReport("lib/a.cpp", 42, "count > 0"),
              CString(u"Assertion failed: count > 0, file lib/a.cpp, line 42"));
#if defined(_WIN32)
    GTEST_SKIP() << "the report is a message box there, not text on standard error";
#else
    ZoAssertDialog::SetPolicy(ZoAssertDialog::eContinue);
    testing::internal::CaptureStderr();
    int evaluated = 0;
    ZO_ASSERT(++evaluated == 1);
    ZO_ASSERT(evaluated == 2);
    const std::string shown = testing::internal::GetCapturedStderr();
    ZoAssertDialog::SetPolicy(ZoAssertDialog::eAbort);
    EXPECT_EQ(evaluated, 1) << "the expression is evaluated once";
    EXPECT_EQ(shown, "Assertion: Assertion failed: evaluated == 2, file " __FILE__ ", line " + std::to_string(__LINE__ - 4) + "\n");
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_DEATH(ZO_ASSERT(evaluated == 3), "Assertion failed: evaluated == 3");
    ZoAssertDialog::SetPolicy(ZoAssertDialog::eBreak);
    EXPECT_EXIT(ZO_ASSERT(evaluated == 4), testing::KilledBySignal(SIGTRAP), "evaluated == 4");
    ZoAssertDialog::SetPolicy(ZoAssertDialog::eAbort);
#endif
}

} // namespace
