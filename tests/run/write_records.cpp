// Writes the orbit samples of a parameter pool as a record file, with its definition:
//
//     write_records <pool> <root> <file> <epoch type> <mission> <source> <channel>
//
// with the numbers of the three, for tape 12 and the data takes 5 and 7.

#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>

#include "pool/parameter_pool_read_write_change.hpp"
#include "records/mdb.hpp"

namespace varnoth {
namespace {

constexpr const char* AXES[] = {"orbit_x", "orbit_y", "orbit_z"};

/// The epochs as texts, whatever their type in the pool.
ARRAY<STRING> Epochs(PARAMETER_POOL& pool, bool are_numbers) {
  ARRAY<STRING> texts;
  if (!are_numbers) {
    pool.Read("orbit_epoch", texts);
    return texts;
  }
  ARRAY<double> numbers;
  pool.Read("orbit_epoch", numbers);
  texts.Resize(numbers.GetRange());
  for (int k = 0; k < numbers.GetLength(); ++k) {
    char text[32];
    std::snprintf(text, sizeof text, "%.16e", numbers.GetBase()[k]);
    texts.GetBase()[k] = text;
  }
  return texts;
}

void WriteRecords(char** words) {
  const auto [pool_name, root, file, type] = std::array{words[0], words[1], words[2], words[3]};
  {
    PARAMETER_POOL_READ_WRITE_CHANGE format((STRING(root) + "/format.dat").c_str());
    format.Change(file, ARRAY<STRING>((STRING("orbit_epoch : ") + type).c_str(), "orbit_x : double",
                                      "orbit_y:double", " orbit_z\t: double"));
  }
  PARAMETER_POOL pool(pool_name);
  const ARRAY<STRING> epochs = Epochs(pool, std::strcmp(type, "double") == 0);
  ARRAY<double> values[3];
  for (int c = 0; c < 3; ++c) pool.Read(AXES[c], values[c]);

  MDB records;
  records.SetPathAndFile(root, std::atoi(words[4]), 12, std::atoi(words[5]), 5, 7,
                         std::atoi(words[6]), file);
  std::filesystem::create_directories(records.GetDirectory().c_str());
  records.Open(std::ios::out);
  RECORD_ITEM key = records.GetKeyItem();
  ARRAY<RECORD_ITEM> items = records.GetRecord();
  for (int k = 0; k < epochs.GetLength(); ++k) {
    key.Parse(epochs.GetBase()[k].c_str());
    for (int c = 0; c < 3; ++c) items.GetBase()[c].number = values[c].GetBase()[k];
    records.SetRecord(items, key);
    records.Write();
  }
  records.Close();
}

}  // namespace
}  // namespace varnoth

int main(int argc, char** argv) {
  if (argc != 8) return 2;
  varnoth::WriteRecords(argv + 1);
}
