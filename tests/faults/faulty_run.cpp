#include "tests/faults/faulty_run.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <poll.h>
#include <spawn.h>
#include <sqlite3.h>
#include <sys/mman.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>
#include <stdexcept>

namespace tav::test {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kDefinition = EXAMPLES "/estate/hut-bookings.xmla";
constexpr std::string_view kOther = EXAMPLES "/lost-property-create.xmla";
constexpr std::string_view kTabular = EXAMPLES "/estate/hut-board.bim";
constexpr int kUntold = 8;         // the exit code of work that is done when that cannot be told
constexpr int kPatience = 30'000;  // milliseconds for one run
constexpr int kCostOfJava = 25;
constexpr std::size_t kLongestMessages = 4096;

Files filesIn(const fs::path& folder) {
  Files files;
  for (const fs::directory_entry& entry : fs::recursive_directory_iterator(folder)) {
    if (!entry.is_directory())
      files[entry.path().lexically_relative(folder)] = readFile(entry.path());
    else if (fs::is_empty(entry))
      files[entry.path().lexically_relative(folder) / ""];
  }
  return files;
}

void replaceAll(std::string& text, std::string_view from, std::string_view to) {
  for (std::size_t at = text.find(from); at != text.npos; at = text.find(from, at + to.size()))
    text.replace(at, from.size(), to);
}

std::vector<char*> pointersTo(std::vector<std::string>& words) {
  std::vector<char*> pointers;
  pointers.reserve(words.size() + 1);
  for (std::string& word : words) pointers.push_back(word.data());
  pointers.push_back(nullptr);
  return pointers;
}

std::size_t linesIn(std::string_view text) {
  return static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
}

/// Waits for a process, and kills it when it does not end.
int awaitEnd(pid_t process) {
  const int handle = static_cast<int>(syscall(SYS_pidfd_open, process, 0));
  pollfd end{handle, POLLIN, 0};
  if (poll(&end, 1, kPatience) == 0) kill(-process, SIGKILL);
  close(handle);
  int status = 0;
  waitpid(process, &status, 0);
  return status;
}

using Database = std::unique_ptr<sqlite3, decltype(&sqlite3_close)>;

/// The values of all rows of a query.
std::string answerOf(sqlite3* database, const std::string& query) {
  std::string answer;
  sqlite3_exec(
      database, query.c_str(),
      [](void* text, int columns, char** values, char** /*names*/) {
        for (int i = 0; i < columns; ++i)
          static_cast<std::string*>(text)->append(values[i] ? values[i] : "NULL").append("|");
        return 0;
      },
      &answer, nullptr);
  return answer;
}

bool isDatabase(const std::string& bytes) {
  return bytes.starts_with("SQLite format 3");
}

/// What an SQLite database holds for whoever opens it next: a transaction that has broken off is taken back
/// by the journal beside it. The hash of a definition may be missing: then it counts as changed.
std::string rowsOf(const Files& files, const std::string& name) {
  const TemporaryFolder folder;
  const std::string path = folder.write("db", files.at(name));
  if (const auto journal = files.find(name + "-journal"); journal != files.end())
    static_cast<void>(folder.write("db-journal", journal->second));
  sqlite3* opened = nullptr;
  sqlite3_open_v2(path.c_str(), &opened, SQLITE_OPEN_READWRITE, nullptr);
  const Database database(opened, &sqlite3_close);
  std::string rows = answerOf(opened, "PRAGMA integrity_check");
  if (rows != "ok|") return rows;
  std::istringstream tables(answerOf(opened,
                                     "SELECT m.name || ':' || (SELECT group_concat(quote(name)) FROM "
                                     "pragma_table_info(m.name) WHERE name <> 'hash') FROM sqlite_schema m "
                                     "WHERE type = 'table'"));
  for (std::string table; std::getline(tables, table, '|');) {
    const std::size_t colon = table.find(':');
    std::string columns = table.substr(colon + 1);
    std::replace(columns.begin(), columns.end(), '\'', '"');
    columns.insert(0, "SELECT ").append(" FROM \"").append(table, 0, colon).append("\"");
    rows.append(table).append(answerOf(opened, columns));
  }
  return rows;
}

bool isSame(const Files& files, const Files& wanted, const std::string& name) {
  const auto file = files.find(name);
  const auto other = wanted.find(name);
  if (file == files.end() || other == wanted.end()) return false;
  if (file->second == other->second) return true;
  return isDatabase(file->second) && isDatabase(other->second) && rowsOf(files, name) == rowsOf(wanted, name);
}

/// Whether a file is no more than what takes a broken off transaction back.
bool isJournal(const Files& files, const std::string& name) {
  constexpr std::string_view kEnd = "-journal";
  return name.ends_with(kEnd) && files.contains(name.substr(0, name.size() - kEnd.size()));
}

/// The first file that is neither as it was nor as it should become.
std::string differing(const Scene& scene, const Ending& ending) {
  for (const auto& [name, bytes] : ending.files) {
    const bool isFolder = name.ends_with('/');  // made for outputs, and kept for the next run
    const auto after = scene.after.find(name);
    const bool isEmptyDatabase = bytes.empty() && after != scene.after.end() && isDatabase(after->second);
    if (isFolder || isEmptyDatabase || isJournal(ending.files, name) ||
        isSame(ending.files, scene.before, name) || isSame(ending.files, scene.after, name))
      continue;
    if (!scene.after.contains(name) && !scene.before.contains(name)) return name + " is left over";
    // Of a database, several processes fill their parts.
    if (!isDatabase(bytes)) return name + " is neither old nor new";
    if (!rowsOf(ending.files, name).starts_with("ok|")) return name + " is damaged";
  }
  for (const auto& [name, bytes] : scene.before)
    if (!ending.files.contains(name)) return name + " is gone";
  return {};
}

std::string wrongFiles(const Scene& scene, const Ending& ending, bool done) {
  if (!ending.temporary.empty()) return "left in the temporary folder: " + ending.temporary.begin()->first;
  if (scene.shared && !done) return differing(scene, ending);
  const Files& wanted = done ? scene.after : scene.before;
  for (const auto& [name, bytes] : ending.files) {
    if (isJournal(wanted, name)) continue;
    if (!wanted.contains(name)) return name + " is left over";
    if (!isSame(ending.files, wanted, name))
      return name + (done ? " is not as without a fault" : " is not as before");
  }
  for (const auto& [name, bytes] : wanted)
    if (!ending.files.contains(name)) return name + " is gone";
  return {};
}

std::string wrongMessages(const Scene& scene, const std::string& errors, bool done) {
  const std::size_t lines = linesIn(errors);
  // Several processes: one line of each, and one of the whole.
  const std::size_t most = scene.messages + (scene.shared ? 4 : 1);
  if (!done && (errors.empty() || !errors.ends_with('\n'))) return "no message";
  if (errors.size() > kLongestMessages || lines > most) return "too many messages: " + errors;
  return {};
}

}  // namespace

Stage::Stage() {
  fs::create_directory(folder_.path() / "run");
  fs::create_directory(folder_.path() / "tmp");
  const std::string path = folder_.write("plan", std::string(sizeof(FaultPlan), '\0'));
  const int file = open(path.c_str(), O_RDWR | O_CLOEXEC);
  void* memory = mmap(nullptr, sizeof(FaultPlan), PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
  close(file);
  if (memory == MAP_FAILED) throw std::runtime_error("the plan cannot be mapped");
  plan_ = static_cast<FaultPlan*>(memory);
  plan(-1, 0, 0, 0);
  model_ = (folder_.path() / "saved.model.xml").string();
}

Stage::~Stage() {
  munmap(plan_, sizeof(FaultPlan));
}

void Stage::plan(int kind, long first, long last, int error) {
  plan_->kind = kind;
  plan_->at = first;
  plan_->last = last;
  plan_->error = error;
}

std::vector<Scene> Stage::loadScenes(const std::string& only) {
  Scene saving = sceneOf("", "import {definition} -o " + model_, kDefinition, {});
  std::vector<Scene> scenes;
  std::istringstream lines(readFile(testFile("faults/commands.txt")));
  for (std::string line; std::getline(lines, line);) {
    const std::size_t colon = line.find(": ");
    if (line.starts_with('#') || colon == line.npos || !line.starts_with(only)) continue;
    const std::string name = line.substr(0, colon);
    const std::string command = line.substr(colon + 2);
    scenes.push_back(sceneOf(name, command, kDefinition, {}));
    if (scenes.back().after.empty()) continue;
    const Files old = sceneOf(name, command, kOther, {}).after;
    scenes.push_back(sceneOf(name + ", again", command, kDefinition, old));
  }
  return scenes;
}

Scene Stage::sceneOf(std::string_view name, std::string_view command, std::string_view definition,
                     const Files& before) {
  Scene scene;
  scene.name = name;
  scene.shared = name.find('!') != name.npos;
  if (command.find("{tabular}") != command.npos) scene.cost = kCostOfJava;
  scene.before = before;
  std::istringstream words{std::string(command)};
  for (std::string word; std::getline(words, word, ' ');) {
    replaceAll(word, "_", " ");
    replaceAll(word, "{definition}", definition);
    replaceAll(word, "{other}", kOther);
    replaceAll(word, "{tabular}", kTabular);
    replaceAll(word, "{model}", model_);
    scene.words.push_back(word);
  }
  plan(-1, 0, 0, 0);
  const Ending ending = run(scene);
  if (ending.code < 0) throw std::runtime_error(scene.name + ": " + ending.errors);
  scene.after = ending.files;
  scene.output = ending.output;
  scene.code = ending.code;
  scene.messages = linesIn(ending.errors);
  std::copy(std::begin(plan_->calls), std::end(plan_->calls), scene.calls.begin());
  return scene;
}

void Stage::restore(const Files& files) {
  if (held_ == files) return;
  const fs::path folder = folder_.path() / "run";
  fs::remove_all(folder);
  fs::create_directory(folder);
  for (const auto& [name, bytes] : files) {
    fs::create_directories((folder / name).parent_path());
    if (!name.ends_with('/')) std::ofstream(folder / name, std::ios::binary) << bytes;
  }
  held_ = files;
}

pid_t Stage::start(const Scene& scene) const {
  const std::string folder = folder_.path().string();
  std::vector<std::string> words{PROGRAM};
  words.insert(words.end(), scene.words.begin(), scene.words.end());
  const std::string preloaded = std::string("LD_PRELOAD=") + FAULTS;
  const std::string plan = std::string(FAULT_PLAN_VARIABLE) + "=" + folder + "/plan";
  std::vector<std::string> environment{preloaded,
                                       plan,
                                       "TMPDIR=" + folder + "/tmp",
                                       "LC_ALL=C.UTF-8",
                                       "SOURCE_DATE_EPOCH=0",
                                       "PATH=" + std::string(getenv("PATH"))};
  posix_spawn_file_actions_t files{};
  posix_spawn_file_actions_init(&files);
  constexpr int kFlags = O_WRONLY | O_CREAT | O_TRUNC;
  posix_spawn_file_actions_addopen(&files, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
  posix_spawn_file_actions_addopen(&files, STDOUT_FILENO, (folder + "/out").c_str(), kFlags, 0600);
  posix_spawn_file_actions_addopen(&files, STDERR_FILENO, (folder + "/errors").c_str(), kFlags, 0600);
  posix_spawn_file_actions_addchdir_np(&files, (folder + "/run").c_str());
  posix_spawnattr_t attributes{};
  posix_spawnattr_init(&attributes);
  posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETPGROUP);
  pid_t process = 0;
  const int failure = posix_spawn(&process, PROGRAM, &files, &attributes, pointersTo(words).data(),
                                  pointersTo(environment).data());
  posix_spawnattr_destroy(&attributes);
  posix_spawn_file_actions_destroy(&files);
  if (failure != 0) throw std::runtime_error("the program cannot be started");
  return process;
}

Ending Stage::run(const Scene& scene) {
  restore(scene.before);
  std::fill(std::begin(plan_->calls), std::end(plan_->calls), 0);
  Ending ending = endingOf(awaitEnd(start(scene)));
  clearTemporary();
  return ending;
}

std::array<Ending, 2> Stage::runTwice(const Scene& scene) {
  restore(scene.before);
  std::fill(std::begin(plan_->calls), std::end(plan_->calls), 0);
  Ending first = endingOf(awaitEnd(start(scene)));
  plan(-1, 0, 0, 0);
  Ending second = endingOf(awaitEnd(start(scene)));
  clearTemporary();
  return {std::move(first), std::move(second)};
}

std::array<Ending, 2> Stage::runTogether(const Scene& scene) {
  restore(scene.before);
  plan(-1, 0, 0, 0);
  const pid_t one = start(scene);
  const pid_t other = start(scene);
  const std::array statuses{awaitEnd(one), awaitEnd(other)};
  std::array<Ending, 2> endings{endingOf(statuses[0]), endingOf(statuses[1])};
  clearTemporary();
  return endings;
}

Ending Stage::endingOf(int status) {
  Ending ending;
  ending.code = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  ending.signal = WIFSIGNALED(status) ? WTERMSIG(status) : 0;
  ending.output = readFile(folder_.path() / "out");
  ending.errors = readFile(folder_.path() / "errors");
  ending.files = held_ = filesIn(folder_.path() / "run");
  ending.temporary = filesIn(folder_.path() / "tmp");
  return ending;
}

void Stage::clearTemporary() const {
  fs::remove_all(folder_.path() / "tmp");
  fs::create_directory(folder_.path() / "tmp");
}

std::string Stage::judge(const Scene& scene, const Ending& ending, bool overcome) {
  if (ending.code < 0) return fmt::format("ended by signal {} ({})", ending.signal, strsignal(ending.signal));
  const bool untold = ending.code == kUntold;
  const bool done = ending.code == scene.code || untold;
  if (overcome && !done) return "was to be carried on from: " + ending.errors;
  if (!done && ending.code != 1) return fmt::format("exit code {}: {}", ending.code, ending.errors);
  if (done && !untold && !scene.shared && ending.output != scene.output) return "another output";
  if (std::string wrong = wrongFiles(scene, ending, done); !wrong.empty())
    return wrong + ": " + ending.errors;
  return wrongMessages(scene, ending.errors, done && !untold);
}

std::string Stage::judgeKilled(const Scene& scene, const Ending& ending) {
  Ending kept = ending;
  std::erase_if(kept.files,
                [](const auto& file) { return file.first.find(".unfinished-") != file.first.npos; });
  return differing(scene, kept);
}

std::string Stage::judgeDone(const Scene& scene, const Ending& ending) {
  if (ending.code != scene.code) return fmt::format("exit code {}: {}", ending.code, ending.errors);
  // Several processes number what they put into a database in the order in which they come.
  return scene.shared ? differing(scene, ending) : wrongFiles(scene, ending, true);
}

}  // namespace tav::test
