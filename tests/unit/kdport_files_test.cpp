#include <gtest/gtest.h>

#include "../kdport_machine.h"
#include "kdport/files/csv.h"
#include "kdport/files/host_file.h"
#include "kdport/model/selection.h"

using namespace KdPort;

namespace {

TEST(KdPortFiles, EveryBadFileIsRefusedWithItsRowAndColumn) {
  const std::string key = "KDSRV\\1&2,1";
  const struct {
    std::string document;
    const char* says;
    ExitCode exit = ExitCode::BadUse;
  } cases[] = {
      {"", "the file is empty"},
      {"\xEF\xBB\xBF\r\n", "the file is empty"},
      {"server,index,speed\n", "row 1, column 3: no column is called \"speed\""},
      {"server,index,name,name\n", "row 1, column 4: \"name\" is there twice"},
      {"index,name\n", "row 1: the column \"server\" is missing"},
      {"server,index,name\n" + key + "\n", "row 2: 2 cells, but there are 3 columns"},
      {"server,index,\"name\"\n\n" + key + ",COM7", "row 3: the file ends within it"},
      {"server,index,name\n" + key + ",\"COM7\n\n", "row 2, column 3: the quotation mark is not closed"},
      {"server,index,name\n" + key + ",\"COM\"7\n", "row 2, column 3: a quotation mark within a cell"},
      {"server,index,name\n" + key + ",COM\xC3\n", "row 2: not UTF-8"},
      {"server,index,name\n" + key + ",COM256\n", "row 2, column name: \"COM256\" is not a COM name"},
      {"server,index,name\n" + key + ",COM07\n", "row 2, column name: \"COM07\" is not a COM name"},
      {"server,index,name\n" + key + "x,COM7\n", "row 2, column index: \"1x\" is not a port number"},
      {"server,index,data-port\r\n" + key + ",65536\r\n", "row 2, column data-port: \"65536\" is not 1 to"},
      {"server,index,baud\n" + key + ",4294967296\n", "row 2, column baud: \"4294967296\" is not"},
      {"server,index,address\n" + key + ",10.0.0.256\n", "row 2, column address: \"10.0.0.256\" is not"},
      {"server,index,name\n" + key + ",COM7\n" + key + ",COM8\n", "row 3: KDSRV\\1&2/1 is in row 2 already"},
      {"server,index\nKDSRV\\1&2,9\n", "no such port: KDSRV\\1&2/9 (row 2)", ExitCode::NoSuchPort},
  };
  const Host host = MakeHost({5});
  for (const auto& row : cases) {
    const WishFile file = ReadHostFile(row.document, host);
    EXPECT_EQ(file.exit, row.exit) << row.document;
    EXPECT_TRUE(file.wishes.empty()) << row.document;
    ASSERT_FALSE(file.faults.empty()) << row.document;
    EXPECT_EQ(Say(file.faults.front()).find(row.says), 0u) << row.says;
  }
}

TEST(KdPortFiles, OnlyWhatIsThereIsWishedFor) {
  const Host host = MakeHost({5, 6});
  const WishFile file = ReadHostFile(
      "\xEF\xBB\xBF"
      "flow,index,server,name\r\n,\"2\",\"kdsrv\\1&2\",com9\r\nxonxoff,1,KDSRV\\1&2,",
      host);
  ASSERT_EQ(file.exit, ExitCode::Done);
  ASSERT_EQ(file.wishes.size(), 2u);
  EXPECT_EQ(file.wishes[0].port, 1u);
  EXPECT_EQ(file.wishes[0].number, 9);
  EXPECT_TRUE(file.wishes[0].values.IsEmpty());
  EXPECT_EQ(file.wishes[1].number, std::nullopt);
  EXPECT_EQ(file.wishes[1].values[Field::FlowControl], 4u);
}

TEST(KdPortFiles, AHundredThousandRowsAreReadAndTheirFaultsBounded) {
  std::string document = "server,index,name\n";
  for (int i = 1; i <= 100'000; ++i) document += "KDSRV\\1&2," + std::to_string(i) + ",COM7\n";
  const WishFile file = ReadHostFile(document, MakeHost({5}));
  EXPECT_EQ(file.exit, ExitCode::NoSuchPort);
  ASSERT_EQ(file.faults.size(), 101u);
  EXPECT_EQ(Say(file.faults.back()), "and 99899 more");
}

TEST(KdPortFiles, WordsOfTheCommandLineFindTheirPorts) {
  Host host = MakeHost({1, 10, 12, 20});
  host.ports[2].present = false;
  host.ports.push_back(host.ports[2]);
  host.ports.back().name = "COM10";  // its successor has the name
  using Places = std::vector<std::size_t>;
  const struct {
    const char* word;
    Places ports;
  } cases[] = {{"com10", {1}},
               {"COM12", {2}},
               {"kdbus\\port\\1&4", {3}},
               {"KDSRV\\1&2/1", {0}},
               {"COM1*", {0, 1}},
               {"com?0", {1, 3}},
               {"*", {0, 1, 3}},
               {"ALL", {0, 1, 3}},
               {"COM2", {}},
               {"", {}},
               {"*1*0*", {1}},
               {"COM1?*?", {}},
               {"KDSRV\\1&2/9", {}},
               {"COM10\xC3", {}}};
  for (const auto& row : cases) {
    const Selection selection = Select(host, {row.word});
    EXPECT_EQ(selection.ports, row.ports) << row.word;
    EXPECT_EQ(selection.unmatched.empty(), !row.ports.empty()) << row.word;
  }
  EXPECT_EQ(Select(host, {"COM2*", "all", "COM3"}).unmatched, std::vector<std::string>{"COM3"});
}

}  // namespace
