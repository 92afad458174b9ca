#include <unistd.h>

#include <CLI/CLI.hpp>
#include <cstdio>
#include <new>
#include <thread>

#include "log/log.hpp"
#include "tools/check/command.hpp"
#include "tools/geometry/command.hpp"
#include "tools/import/commands.hpp"
#include "tools/import/moment.hpp"
#include "tools/pool/commands.hpp"
#include "tools/report/command.hpp"
#include "tools/stack/commands.hpp"

namespace varnoth {

namespace {

/// The product's libraries tell what they do in the process's log; here only the tool speaks.
void SilenceLog() {
  GlobalLog.configure("", "varnoth-tools", NO_LEVEL, NO_LEVEL);
  if (!GlobalLog.get_file_path().empty()) unlink(GlobalLog.get_file_path().c_str());
}

constexpr char VALUE_MARK = '=';

/// Marks the step's arguments of "geometry", pairs of a key and a value; an option's value joins
/// its name, since it may begin with a minus as well.
void MarkBesideOptions(std::vector<std::string>& words) {
  for (std::size_t i = 1; i < words.size(); ++i) {
    if (words[i].starts_with("--")) {
      const bool has_value = words[i] != "--help" && words[i].find('=') == words[i].npos;
      if (!has_value || i + 1 == words.size()) continue;
      words[i] += "=" + words[i + 1];
      words.erase(words.begin() + static_cast<std::ptrdiff_t>(i + 1));
    } else if (words[i] != "-h") {
      words[i].insert(0, 1, VALUE_MARK);
      if (words[i].starts_with("=-") && ++i < words.size()) words[i].insert(0, 1, VALUE_MARK);
    }
  }
}

/// CLI11 takes a value that begins with a minus for an option, and brackets for a list: what stands
/// behind FILE KEY TYPE of "pool set", and the step's arguments of "check", behind its options, and
/// of "geometry" get a mark in front.
std::vector<std::string> MarkValues(std::vector<std::string> words) {
  if (!words.empty() && words[0] == "check") {
    std::size_t i = 1;
    while (i < words.size() && (words[i].starts_with("--") || words[i] == "-h")) ++i;
    for (; i < words.size(); ++i) words[i].insert(0, 1, VALUE_MARK);
  }
  if (!words.empty() && words[0] == "geometry") MarkBesideOptions(words);
  if (words.size() < 2 || words[0] != "pool" || words[1] != "set") return words;
  int place = 0;
  bool only_values = false;
  for (std::size_t i = 2; i < words.size(); ++i) {
    const std::string& word = words[i];
    if (!only_values && word == "--comment") {
      ++i;
    } else if (!only_values && word == "--") {
      only_values = true;
      words.erase(words.begin() + static_cast<std::ptrdiff_t>(i--));
    } else if (only_values || !word.starts_with("--")) {
      if (++place > 3) words[i].insert(0, 1, VALUE_MARK);
    }
  }
  return words;
}

/// A tolerance as KEY=X. False if it is none.
bool AddTolerance(const std::string& text, DIFF_LIMITS& limits) {
  const std::size_t sign = text.rfind('=');
  double limit = 0.0;
  if (sign == text.npos || sign == 0 || !CLI::detail::lexical_cast(text.substr(sign + 1), limit)) {
    return false;
  }
  if (!(limit >= 0)) return false;
  limits.of_key[text.substr(0, sign)] = limit;
  return true;
}

/// The library's own range takes what is no number, and shows three hundred digits.
CLI::Validator Between(double low, double high) {
  return {[=](const std::string& text) {
            double value = 0.0;
            const bool is_good =
                CLI::detail::lexical_cast(text, value) && value >= low && value <= high;
            return is_good ? std::string() : text + " is no number that is meant here";
          },
          "NUMBER"};
}

/// What the command "check" was given.
struct CHECK_ARGUMENTS {
  std::vector<std::string> of_step;
  bool as_json = false;
};

void AddCheck(CLI::App& app, CHECK_ARGUMENTS& given, TOOL_STATUS& status) {
  CLI::App* const check = app.add_subcommand("check", "Tell whether a run would work");
  check->add_flag("--json", given.as_json, "Print JSON; ahead of the step's arguments");
  check->add_option("ARGUMENT", given.of_step, "The step's own arguments");
  check->callback([&] {
    for (std::string& word : given.of_step) word.erase(0, 1);
    status = tools::CheckStep(given.of_step, given.as_json);
  });
}

void AddGeometry(CLI::App& app, tools::GEOMETRY_REQUEST& request, TOOL_STATUS& status) {
  CLI::App* const geometry =
      app.add_subcommand("geometry", "Tell the geometry of a run's pair at any points");
  const auto read_grid = [&request](const std::string& text) {
    return std::string(
        tools::ReadGrid(text, request) ? "" : text + " is no LINESxSAMPLES of 2x2 or more");
  };
  CLI::Option_group* const place = geometry->add_option_group("where");
  place->add_option("--points", request.points,
                    "File with columns line, sample and height, or - for the standard input");
  CLI::Option* const grid = place->add_option("--grid", "Grid over the scene, as 5x11")
                                ->check(CLI::Validator(read_grid, "LINESxSAMPLES"));
  place->require_option(1);
  const auto read_heights = [&request](const std::string& text) {
    return tools::ReadHeights(text, request);
  };
  geometry->add_option("--heights", "Heights of the grid in m, as 0,500")
      ->check(CLI::Validator(read_heights, "H,..."))
      ->needs(grid);
  geometry->add_option("--format", request.format, "Without it, as FILE of --out ends, or text")
      ->check(CLI::IsMember({"text", "csv", "json", "netcdf"}));
  geometry->add_option("--out", request.out, "File to write instead of standard output");
  request.jobs = std::max(std::thread::hardware_concurrency(), 1U);
  geometry->add_option("--jobs", request.jobs, "Threads; without it, one per processor")
      ->check(CLI::Range(1, 1024));
  geometry->add_option("ARGUMENT", request.of_step, "The step's own arguments");
  geometry->callback([&] {
    for (std::string& word : request.of_step) word.erase(0, 1);
    if (request.format.empty()) request.format = tools::FormatOf(request.out);
    if (request.format == "netcdf" && request.out.empty()) {
      throw CLI::ValidationError("--format netcdf needs --out");
    }
    status = tools::WriteGeometry(request);
  });
}

/// "import" itself; its subcommands are added by an Add... each.
CLI::App* AddImport(CLI::App& app) {
  CLI::App* const import =
      app.add_subcommand("import", "Make scene pools of annotation and orbits");
  import->require_subcommand(1);
  return import;
}

void AddImportSentinel1(CLI::App& import, tools::SENTINEL1_REQUEST& request, TOOL_STATUS& status) {
  CLI::App* const command =
      import.add_subcommand("sentinel1", "Read the annotation of a single-look complex image");
  command->add_option("SOURCE", request.source, "Annotation (.xml, .xml.gz), .SAFE folder or .zip")
      ->required();
  command->add_option("--out", request.out, "Scene pool to write")->required();
  command->add_option("--swath", request.swath, "Swath, as IW1");
  command->add_option("--polarisation", request.polarisation, "Polarisation, as VV");
  command->add_option("--orbit", request.orbit, "Orbit file (.EOF), or a folder of them");
  command->add_option("--interpolation", request.interpolation, "Of the orbit")
      ->capture_default_str();
  command->callback([&] { status = tools::ImportSentinel1(request); });
}

struct IMPORT_REQUESTS {
  tools::PARAMETERS_REQUEST gmtsar;
  tools::PARAMETERS_REQUEST gamma;
  tools::OEM_REQUEST oem;
  tools::PAIR_REQUEST pair;
  std::string mode = "dual_pass";
};

void AddParameterFile(CLI::App& import, const char* name, const char* text,
                      tools::PARAMETERS_REQUEST& request, TOOL_STATUS& status,
                      TOOL_STATUS (*run)(const tools::PARAMETERS_REQUEST&)) {
  CLI::App* const command = import.add_subcommand(name, text);
  command->add_option("FILE", request.source, "Parameter file")->required();
  command->add_option("--out", request.out, "Scene pool to write")->required();
  command->add_option("--interpolation", request.interpolation, "Of the orbit");
  command->callback([&request, &status, run] { status = run(request); });
}

/// The imports of scenes from other processors, of orbits, and of pairs.
void AddOtherImports(CLI::App& import, IMPORT_REQUESTS& requests, TOOL_STATUS& status) {
  AddParameterFile(import, "gmtsar", "Read a PRM file and the LED file that it names",
                   requests.gmtsar, status, tools::ImportGmtsar);
  AddParameterFile(import, "gamma", "Read a single-look parameter file (.slc.par)", requests.gamma,
                   status, tools::ImportGamma);

  CLI::App* const oem =
      import.add_subcommand("oem", "Take a scene's orbit from a CCSDS ephemeris (OEM, text)");
  oem->add_option("FILE", requests.oem.source, "Ephemeris")->required();
  oem->add_option("--scene", requests.oem.scene, "Scene pool whose orbit is replaced")->required();
  oem->add_option("--out", requests.oem.out, "Scene pool to write")->required();
  oem->add_option("--interpolation", requests.oem.interpolation,
                  "Of the orbit; else the one of the ephemeris");
  oem->callback([&] { status = tools::ImportOem(requests.oem); });

  CLI::App* const pair = import.add_subcommand("pair", "Make a directory for a run of two scenes");
  pair->add_option("MASTER", requests.pair.master, "Scene pool")->required();
  pair->add_option("SLAVE", requests.pair.slave, "Scene pool")->required();
  pair->add_option("--out", requests.pair.out, "Directory to make")->required();
  pair->add_option("--height", requests.pair.height, "Of the scene above the ellipsoid in m")
      ->check(Between(-1000.0, 9000.0))
      ->capture_default_str();
  const CLI::Validator section(
      [](const std::string& text) {
        return std::string(tools::IsSection(text) ? ""
                                                  : text + " is no FIRST:LAST, counted from 0");
      },
      "FIRST:LAST");
  pair->add_option("--lines", requests.pair.lines, "First and last line")->check(section);
  pair->add_option("--samples", requests.pair.samples, "First and last sample")->check(section);
  pair->add_option("--mode", requests.mode, "Observation mode")
      ->check(CLI::IsMember({"single_pass", "dual_pass"}))
      ->capture_default_str();
  pair->callback([&] {
    requests.pair.is_single_pass = requests.mode == "single_pass";
    status = tools::ImportPair(requests.pair);
  });
}

void AddReport(CLI::App& app, tools::REPORT_REQUEST& request, TOOL_STATUS& status) {
  CLI::App* const report = app.add_subcommand("report", "Write a page about pairs and their runs");
  report->add_option("DIR", request.places, "Directory of a pair, or of results")->required();
  report->add_option("--out", request.out, "Page to write, as report.html")->required();
  report->callback([&] { status = tools::WriteReport(request); });
}

/// What the commands "stack" were given.
struct STACK_REQUESTS {
  tools::PLAN_REQUEST plan;
  tools::RUN_REQUEST run;
};

void AddStackPlan(CLI::App& stack, tools::PLAN_REQUEST& request, TOOL_STATUS& status) {
  CLI::App* const plan = stack.add_subcommand("plan", "Choose the pairs of scenes of one track");
  plan->add_option("SCENE", request.places, "Scene pools, or folders of them")->required();
  plan->add_option("--out", request.out, "Directory for the plan")->required();
  const CLI::Validator date(
      [](const std::string& text) {
        return std::string(tools::MomentFromText(text + "T00:00:00") ? "" : text + " is no date");
      },
      "YYYY-MM-DD");
  plan->add_option("--reference", request.reference, "Date of the reference; else the best")
      ->check(date);
  plan->add_option("--height", request.height, "Of the scenes above the ellipsoid in m")
      ->check(Between(-1000.0, 9000.0))
      ->capture_default_str();
  plan->add_option("--max-days", request.network.max_days, "Longest time between two scenes")
      ->check(Between(0.0, 1e9));
  plan->add_option("--max-baseline", request.network.max_baseline,
                   "Largest amount of the perpendicular baseline in m")
      ->check(Between(0.0, 1e9));
  CLI::Option_group* const kind = plan->add_option_group("network", "Without one, all pairs");
  kind->add_option("--nearest", request.network.nearest, "Each scene with the K next ones in time")
      ->check(Between(1, 1e9))
      ->each([&](const std::string&) { request.network.kind = tools::NETWORK::NEAREST; });
  kind->add_flag_callback(
      "--star", [&] { request.network.kind = tools::NETWORK::STAR; },
      "The reference with each other scene");
  kind->add_flag_callback(
      "--delaunay", [&] { request.network.kind = tools::NETWORK::DELAUNAY; },
      "Triangles over time and perpendicular baseline");
  kind->require_option(0, 1);
  plan->add_option("--make", request.make, "Directory for the pairs' directories");
  plan->callback([&] { status = tools::PlanStack(request); });
}

void AddStack(CLI::App& app, STACK_REQUESTS& requests, TOOL_STATUS& status) {
  CLI::App* const stack = app.add_subcommand("stack", "Plan the pairs of a stack, and run them");
  stack->require_subcommand(1);
  AddStackPlan(*stack, requests.plan, status);
  CLI::App* const run = stack->add_subcommand("run", "Run pairs, one after the other");
  run->add_option("PAIR", requests.run.pairs, "Directories of pairs")->required();
  run->add_option("--results", requests.run.results, "Directory for the results")->required();
  run->callback([&] { status = tools::RunStack(requests.run); });
}

int Run(int count, char** arguments) {
  CLI::App app("Tools around varnoth: make, look at and mend pools", "varnoth-tools");
  app.set_version_flag("--version", "varnoth-tools " VARNOTH_VERSION, "Print the version and exit");
  app.require_subcommand(1);
  CLI::App* const pool = app.add_subcommand("pool", "Show, change, compare and check pools");
  pool->require_subcommand(1);
  TOOL_STATUS status = GOOD;

  std::vector<std::string> files;
  std::string file;
  std::string other;
  std::string key;
  bool as_json = false;
  CLI::App* const show = pool->add_subcommand("show", "Print keys, types, values and comments");
  show->add_option("FILE", files, "Pools")->required();
  show->add_flag("--json", as_json, "Print JSON");
  show->callback([&] { status = ShowPools(files, as_json); });

  CLI::App* const get = pool->add_subcommand("get", "Print one value");
  get->add_option("FILE", file, "Pool")->required();
  get->add_option("KEY", key, "Key")->required();
  get->add_flag("--json", as_json, "Print JSON");
  get->callback([&] { status = GetValue(file, key, as_json); });

  SET_REQUEST request;
  std::string comment;
  CLI::App* const set = pool->add_subcommand("set", "Change or add one entry");
  set->add_option("FILE", request.file, "Pool")->required();
  set->add_option("KEY", request.key, "Key")->required();
  set->add_option("TYPE", request.type, "Type word of a scalar or vector")->required();
  set->add_option("VALUE", request.values, "Value; several make a vector")->required();
  CLI::Option* const has_comment = set->add_option("--comment", comment, "Line above the entry");
  set->callback([&] {
    for (std::string& value : request.values) value.erase(0, 1);
    if (*has_comment) request.comment = comment;
    status = SetValue(request);
  });

  std::vector<std::string> tolerances;
  DIFF_LIMITS limits;
  CLI::App* const diff = pool->add_subcommand("diff", "Compare two pools");
  diff->add_option("A", file, "Pool")->required();
  diff->add_option("B", other, "Pool")->required();
  diff->add_option("--tolerance", tolerances, "KEY=X: largest absolute difference of a key")
      ->expected(1)
      ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll)
      ->check([&](const std::string& text) {
        return std::string(AddTolerance(text, limits) ? "" : text + " is no KEY=X");
      });
  diff->add_option("--relative", limits.relative, "Largest relative difference of all numbers")
      ->check(Between(0.0, 1e9));
  diff->callback([&] { status = DiffPools(file, other, limits); });

  CLI::App* const check = pool->add_subcommand("check", "Tell every pit of the format");
  check->add_option("FILE", files, "Pools")->required();
  check->callback([&] { status = CheckPools(files); });

  CHECK_ARGUMENTS step;
  AddCheck(app, step, status);
  tools::GEOMETRY_REQUEST geometry;
  AddGeometry(app, geometry, status);
  CLI::App* const import = AddImport(app);
  tools::SENTINEL1_REQUEST sentinel1;
  AddImportSentinel1(*import, sentinel1, status);
  IMPORT_REQUESTS imports;
  AddOtherImports(*import, imports, status);
  STACK_REQUESTS stack;
  AddStack(app, stack, status);
  tools::REPORT_REQUEST report;
  AddReport(app, report, status);

  try {
    std::vector<std::string> words = MarkValues({arguments + 1, arguments + count});
    std::reverse(words.begin(), words.end());  // as CLI11 wants them
    app.parse(std::move(words));
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? GOOD : WRONG_USAGE;
  }
  // A full disk behind the standard output is a failure.
  if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0) {
    std::perror("varnoth-tools");
    return FINDINGS;
  }
  return status;
}

}  // namespace

}  // namespace varnoth

int main(int count, char** arguments) try {
  varnoth::SilenceLog();
  return varnoth::Run(count, arguments);
} catch (const std::bad_alloc&) {
  std::fputs("varnoth-tools: not enough memory\n", stderr);
  return varnoth::FINDINGS;
}
