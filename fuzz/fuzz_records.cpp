#include <filesystem>

#include "fuzz_target.hpp"
#include "records/mdb.hpp"

namespace varnoth::fuzz {

/// A definition and a record file, divided by an empty line.
void FuzzRecords(const std::string& input) {
  const std::size_t end = input.find("\n\n");
  if (end == input.npos) return;
  WriteFile("format.dat", input.substr(0, end + 1));
  MDB records;
  if (!Accepts([&] { records.SetPathAndFile(".", 4, 12, 3, 5, 7, 1, "f"); })) return;
  const std::string directory = records.GetDirectory().c_str();
  static std::string made;
  if (made != directory) std::filesystem::create_directories(made = directory);
  WriteFile((directory + "/f").c_str(), input.substr(end + 2));
  records.Open(std::ios::in);
  RECORD_ITEM last;
  bool is_read = false;
  Accepts([&] {
    for (; records.Read(); is_read = true) last = records.GetKeyItem();
  });
  for (const int lines : {-3, 2, -1000}) Accepts([&] { records.ReadStep(lines); });
  for (int stop = mdb_stop_before; stop <= mdb_stop_after; ++stop) {
    Accepts([&] { records.GotoRecord(last, static_cast<MDB_STOP>(stop)); });
  }
  if (!is_read || !Accepts([&] { last.Text(); })) return;
  // A record that `Read` took and `Write` wrote reads back.
  Accepts([&] {
    records.GotoRecord(last, mdb_stop_nearest);
    records.Open(std::ios::out | std::ios::trunc);
    records.Write();
    const RECORD_ITEM key = records.GetKeyItem();
    records.Open(std::ios::in);
    Require(records.Read() && records.GetKeyItem().Equals(key), "a written record reads back");
  });
}

}  // namespace varnoth::fuzz
