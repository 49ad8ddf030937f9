#include "base/ZoUniqueID.h"

#include "ZoTestChildProcess.h"
#include "ZoTestSupport.h"

#include <fstream>
#include <set>
#include <string>
#include <thread>
#include <vector>

namespace {

const int sc_perThread = 25000;

// 8-4-4-4-12 upper-case hexadecimal digits; the library's own generator also marks version 1 and
// variant 10xx (wine's leaves the variant bits as the clock sequence has them).
void expectWellFormed(const std::string& id)
{
    ASSERT_EQ(id.size(), 36u) << id;
    for (size_t i = 0; i < id.size(); ++i) {
        const bool dash = i == 8 || i == 13 || i == 18 || i == 23;
        EXPECT_TRUE(dash ? id[i] == '-' : (id[i] >= '0' && id[i] <= '9') || (id[i] >= 'A' && id[i] <= 'F')) << id;
    }
#if !defined(_WIN32)
    EXPECT_EQ(id[14], '1') << id;
    EXPECT_NE(std::string("89AB").find(id[19]), std::string::npos) << id;
#endif
}

std::vector<std::string> makeMany()
{
    std::vector<std::string> ids;
    for (int i = 0; i < sc_perThread; ++i)
        ids.push_back(ZoUniqueID::GetUniqueID().ToUtf8());
    return ids;
}

TEST(ZoUniqueIDTest, ConcurrentThreadsGetDistinctWellFormedIdentifiers)
{
    std::vector<std::vector<std::string>> perThread(4);
    std::vector<std::thread> threads;
    for (auto& ids : perThread)
        threads.emplace_back([&ids] { ids = makeMany(); });
    std::set<std::string> all;
    for (size_t i = 0; i < threads.size(); ++i) {
        threads[i].join();
        all.insert(perThread[i].begin(), perThread[i].end());
    }
    EXPECT_EQ(all.size(), 4u * sc_perThread);
    expectWellFormed(*all.begin());
    expectWellFormed(*all.rbegin());
}

// The child half of the test below: writes its identifiers to a file named after its process id.
TEST(ZoUniqueIDTest, DISABLED_ChildWritesIdentifiers)
{
    ASSERT_NE(zotest::ChildArgument(), nullptr);
    std::ofstream out(std::string(zotest::ChildArgument()) + "/ids-" + std::to_string(zotest::CurrentProcessId()));
    for (const std::string& id : makeMany())
        out << id << '\n';
}

TEST(ZoUniqueIDTest, TwoProcessesAtOnceGetDistinctIdentifiers)
{
    if (zotest::RunningUnderWine())
        GTEST_SKIP() << "wine's UuidCreateSequential gives every process the same node and clock sequence "
                        "without sharing its clock, so two processes there repeat each other's identifiers";
    zotest::TempFolder folder;
    zotest::SetChildArgument(folder.Path());
    std::vector<int> results(2, -1);
    std::vector<std::thread> children;
    for (int i = 0; i < 2; ++i)
        children.emplace_back([&, i] {
            results[i] = zotest::RunChildTest("ZoUniqueIDTest.DISABLED_ChildWritesIdentifiers",
                                              folder.Path("child" + std::to_string(i)));
        });
    for (auto& child : children)
        child.join();
    ASSERT_EQ(results, std::vector<int>({0, 0}));
    std::set<std::string> all;
    for (const auto& entry : std::filesystem::directory_iterator(folder.Path())) {
        std::ifstream in(entry.path());
        for (std::string line; entry.path().filename().string().rfind("ids-", 0) == 0 && std::getline(in, line);) {
            expectWellFormed(line);
            all.insert(line);
        }
    }
    EXPECT_EQ(all.size(), 2u * sc_perThread) << "two files of distinct identifiers";
}

} // namespace
