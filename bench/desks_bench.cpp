// Many workstations at work on one store: each a process with a connection and a board of its own that ticks, moves patients
// and looks for patients. Prints what they did, how long it took (until the receptionist sees it), what it cost the
// servers, and whether a write was lost or made twice.
//
// desks_bench FOLDER [DESKS PRACTICES SECONDS PACE]: an empty folder. The desks are spread evenly over the practices, each of which
// has a database of its own. At PACE 1 a board ticks every 3 s and a desk moves a patient every 20 s and looks for one every
// 30 s: more than a busy day has. At a higher pace one desk does the work of so many, on one connection. The servers are those that
// tests/recordstore/store_server.h names, or the files of the embedded store; the databases stay.

#include <algorithm>
#include <array>
#include <atomic>
#include <ctime>
#include <map>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "bench/paired.h"
#include "bench/processes.h"
#include "foundation/settings_store.h"
#include "pickers/patient_query.h"
#include "platform/os/application_profile.h"
#include "platform/os/clock.h"
#include "platform/os/files.h"
#include "platform/os/paths.h"
#include "platform/recordstore/administration.h"
#include "platform/recordstore/engine.h"
#include "platform/recordstore/table.h"
#include "tests/recordstore/store_server.h"
#include "visitflow/board_session.h"

namespace kova::bench {
namespace {

using store::GetText;
using store::PutText;
using store::On;
using visitflow::BoardButton;
using visitflow::BoardRow;
using visitflow::MoveOutcome;

constexpr double kTickEvery = 3, kMoveEvery = 20, kQueryEvery = 30;
constexpr int kPatients = 1000;
constexpr int kRowsPerDesk = 10, kRowsAtMost = 300;
constexpr const char* kDay = "21000104";
const std::vector<visitflow::Stage> kStages = {{10, "問診"}, {20, "診療"}, {30, "会計"}};
constexpr int kPlaces = 5;  // before the visit, the stages, finished

struct Plan {
  std::string folder;
  int desks = 200, practices = 20, seconds = 60;
  double pace = 1;
  int RowsOfPractice() const { return std::min(kRowsPerDesk * desks / practices, kRowsAtMost); }
};

// ---- what a desk leaves for the parent

enum Work { kIdleTick, kRefresh, kMove, kQuery, kWorks };
constexpr const char* kWorkNames[kWorks] = {"idle tick", "refresh", "move", "query"};

struct AcceptedMove {
  int row, from, to;
};

struct Desk {
  static constexpr int kRoom = 20000;
  int samples[kWorks], moves, refused, failed, late;
  std::uint64_t trips[kWorks];  // round trips to the server
  double processor;  // seconds of it while at work
  std::uint32_t microseconds[kWorks][kRoom];
  AcceptedMove accepted[kRoom];

  void Took(Work work, double since, std::uint64_t roundTrips) {
    if (samples[work] == kRoom) return;
    microseconds[work][samples[work]++] = static_cast<std::uint32_t>((Seconds() - since) * 1e6);
    trips[work] += roundTrips;
  }
};

struct Phase {
  std::atomic<int> ready, begun, done, ended;
};

// ---- a practice

std::string Number(const char* format, int number) {
  char text[16];
  std::snprintf(text, sizeof text, format, number);
  return text;
}

std::string PracticeFolder(const Plan& plan, int practice) {
  return plan.folder + "/practice" + std::to_string(practice);
}

/// A reading such that the first two characters are those of a few patients.
std::string Reading(int patient) {
  static const std::string kSyllables[] = {"ｱ", "ｶ", "ｻ", "ﾀ", "ﾅ", "ﾊ", "ﾏ", "ﾔ", "ﾗ", "ﾜ", "ｲ", "ｷ", "ｼ", "ﾁ", "ﾆ", "ﾋ", "ﾐ", "ﾘ", "ｳ", "ｸ"};
  return kSyllables[patient % 20] + kSyllables[patient / 20 % 20] + "ﾀﾞ ﾊﾅｺ";
}

void PutStages(CKovaDBSys& db) {
  for (const visitflow::Stage& stage : kStages) {
    On<CCategoryDB> table(db);
    PutText(table.record.classCode, "5");
    PutText(table.record.code, std::to_string(stage.code));
    PutText(table.record.sortOrder, std::to_string(stage.code));
    PutText(table.record.name, stage.name);
    Check(table.Insert() == 0, "stage");
  }
}

void PutPatients(CKovaDBSys& db) {
  const store::TableDef& table = store::GetTable(store::TableId::Patient);
  store::RecordBlock block;
  block.Reset(sizeof(tagPATIENTDB));
  for (int i = 0; i < kPatients; ++i) {
    tagPATIENTDB record{};
    PutText(record.patientCode, Number("%010d", i));
    PutText(record.caseNumber, Number("%d", i));
    PutText(record.name, i % 2 == 0 ? "五十嵐　美千代" : "山田　太郎");
    PutText(record.reading, Reading(i));
    PutText(record.birthDate, "19700102");
    PutText(record.address, "東京都千代田区千代田１丁目１番１号");
    std::copy_n(reinterpret_cast<const char*>(&record), sizeof record, block.Add(i + 1));
  }
  store::Engine& engine = *db.GetEngine();
  Check(engine.Begin() == store::Result::kDone && engine.InsertMany(table, block, 0) == store::Result::kDone &&
            engine.End() == store::Result::kDone,
        "patients");
}

void PutDay(CKovaDBSys& db, int rows) {
  On<CReservationDB> table(db);
  Check(table.BeginTran() == 0, "begin");
  for (int i = 0; i < rows; ++i) {
    PutText(table.record.reservationNumber, Number("%012d", i));
    PutText(table.record.reservationDate, kDay);
    PutText(table.record.startTime, Number("%02d", 9 + i % 10) + Number("%02d", i / 10 % 4 * 15));
    PutText(table.record.patientCode, Number("%010d", i * 7 % kPatients));
    table.record.hasFee = table.record.feeNoCategory = 1;
    table.record.feeAmount = 1080;
    Check(table.Insert() == 0, "reservation");
  }
  Check(table.EndTran() == 0, "end");
}

/// The servers' names, with another one first for each practice.
std::string HostsFor(int practice) {
  std::vector<std::string> hosts;
  std::istringstream all(testing::Environment("KOVA_SERVER_HOSTS"));
  for (std::string host; std::getline(all, host, ',');) hosts.push_back(host);
  if (hosts.empty()) return {};
  std::rotate(hosts.begin(), hosts.begin() + practice % static_cast<int>(hosts.size()), hosts.end());
  std::string text;
  for (const std::string& host : hosts) text += (text.empty() ? "" : ",") + host;
  return text;
}

void MakePractices(const Plan& plan) {
  for (int i = 0; i < plan.practices; ++i) {
    const std::string folder = PracticeFolder(plan, i);
    (void)os::RealFiles().MakeFolder(folder);
    testing::PutOnServer(folder, testing::NewDatabaseName(), HostsFor(i));
    std::string problem;
    Check(KovaCreateDatabase(folder.c_str(), &problem) == 0, ("create: " + problem).c_str());
    CKovaDBSys db;
    Check(db.OpenDB(folder.c_str()) == 0, "open");
    PutStages(db);
    PutPatients(db);
    PutDay(db, plan.RowsOfPractice());
  }
}

// ---- a desk

class Silent final : public foundation::Prompts {
 public:
  bool AskYesNo(std::string_view) override { return false; }
  void Inform(std::string_view) override {}
};

class Receptionist {
 public:
  Receptionist(const Plan& plan, int number, Desk& desk)
      : plan_(plan), desk_(desk), random_(static_cast<unsigned>(number)),
        folder_(PracticeFolder(plan, number % plan.practices)), profile_(os::RealFiles(), folder_ + "/app.ini") {
    Check(db_.OpenDB(folder_.c_str()) == 0, "open");
    session_.Open();
    Check(session_.StatusLine().empty() && session_.Stages() == kStages, "board");
  }

  void WorkUntil(double end) {
    const double now = Seconds();
    double tick = now + Fraction() * Every(kTickEvery), move = now + Fraction() * Every(kMoveEvery),
           query = now + Fraction() * Every(kQueryEvery);
    while (true) {
      const double next = std::min({tick, move, query});
      if (next >= end) return;
      SleepUntil(next);
      if (next == tick) {
        Tick();
        // As a window's timer: ticks that came meanwhile are one.
        for (tick += Every(kTickEvery); tick < Seconds(); tick += Every(kTickEvery)) ++desk_.late;
      } else if (next == move) {
        Move();
        move = Seconds() + (0.5 + Fraction()) * Every(kMoveEvery);
      } else {
        Query();
        query = Seconds() + (0.5 + Fraction()) * Every(kQueryEvery);
      }
    }
  }

 private:
  std::uint64_t Trips() const { return db_.GetEngine()->RoundTrips(); }
  double Every(double seconds) const { return seconds / plan_.pace; }
  double Fraction() { return std::uniform_real_distribution<double>(0, 1)(random_); }
  std::size_t Any(std::size_t count) { return random_() % count; }

  static void SleepUntil(double moment) {
    const double wait = moment - Seconds();
    if (wait <= 0) return;
    timespec time = {static_cast<time_t>(wait), static_cast<long>((wait - static_cast<double>(static_cast<time_t>(wait))) * 1e9)};
    nanosleep(&time, nullptr);
  }

  void Tick() {
    const std::uint64_t before = Trips();
    const double start = Seconds();
    const bool isRead = session_.Tick() || Trips() > before + 1;
    desk_.Took(isRead ? kRefresh : kIdleTick, start, Trips() - before);
    // The line may still tell of a move that another desk had made first.
    if (session_.StatusLine().find("接続できません") != std::string::npos) ++desk_.failed;
  }

  /// A patient goes on to the next stage; now and then one goes back.
  void Move() {
    const visitflow::Board& board = session_.Shown();
    const bool isBack = Any(8) == 0;
    const std::vector<BoardRow>* list = &board.staged;
    BoardButton button = isBack ? BoardButton::kStageBack : BoardButton::kStageForward;
    if (isBack && Any(3) == 0 && !board.finished.empty()) {
      list = &board.finished;
      button = BoardButton::kFinishedBack;
    } else if (list->empty() || (!isBack && Any(4) == 0 && !board.before.empty())) {
      list = &board.before;
      button = BoardButton::kBeforeToNext;
    }
    if (list->empty()) return;
    const BoardRow& row = (*list)[Any(list->size())];
    const int from = list == &board.before ? 0 : list == &board.finished ? kPlaces - 1 : row.stage + 1;
    const int to = button == BoardButton::kStageForward || button == BoardButton::kBeforeToNext ? from + 1 : from - 1;
    const AcceptedMove move = {std::stoi(row.key), from, to};
    const std::uint64_t before = Trips();
    const double start = Seconds();
    const MoveOutcome outcome = session_.Move(button, {row.key}, {}).at(0).outcome;
    if (outcome == MoveOutcome::kDone) {
      desk_.Took(kMove, start, Trips() - before);
      Check(desk_.moves < Desk::kRoom, "room for moves");
      desk_.accepted[desk_.moves++] = move;
    } else if (outcome == MoveOutcome::kMovedByOther) {
      ++desk_.refused;
    } else {
      ++desk_.failed;
    }
  }

  void Query() {
    const std::string beginning = Reading(static_cast<int>(Any(kPatients))).substr(0, 2);
    const std::uint64_t before = Trips();
    const double start = Seconds();
    const auto hits = pickers::QueryPatients(&db_, pickers::SearchMode::kKana, beginning, false);
    desk_.Took(kQuery, start, Trips() - before);
    if (hits.empty()) ++desk_.failed;
  }

  const Plan& plan_;
  Desk& desk_;
  std::mt19937 random_;
  std::string folder_;
  os::IniApplicationProfile profile_;
  foundation::SettingsStore settings_{profile_, os::RealFiles()};
  Silent prompts_;
  CKovaDBSys db_;
  visitflow::BoardSession session_{{&db_, settings_, prompts_, {}, [] { return std::optional(os::LocalTime()); }}, kDay};
};

// ---- what must be in the databases at the end

/// Each reservation's accepted moves, in whatever order, must be a way from before the visit to where it stands: every place
/// is left as often as it is come to, but for the two ends. A sale belongs to every reservation that came, and none
/// to nobody.
struct Differences {
  int lost = 0, twice = 0;
};

Differences Compare(const Plan& plan, const Desk* desks, int practice) {
  CKovaDBSys db;
  Check(db.OpenDB(PracticeFolder(plan, practice).c_str()) == 0, "open");
  std::vector<std::array<int, kPlaces>> left(static_cast<std::size_t>(plan.RowsOfPractice()));
  for (int i = practice; i < plan.desks; i += plan.practices) {
    for (int m = 0; m < desks[i].moves; ++m) {
      const AcceptedMove& move = desks[i].accepted[m];
      ++left[static_cast<std::size_t>(move.row)][static_cast<std::size_t>(move.from)];
      --left[static_cast<std::size_t>(move.row)][static_cast<std::size_t>(move.to)];
    }
  }
  std::map<std::string, int> sales;
  On<CSaleDB> sale(db);
  for (int r = sale.GetFIRST(); r == 0; r = sale.GetNEXT()) ++sales[std::string(GetText(sale.record.saleNumber))];
  Differences found;
  int rows = 0;
  On<CReservationDB> table(db);
  for (int r = table.GetFIRST(); r == 0; r = table.GetNEXT(), ++rows) {
    const visitflow::Place place = visitflow::PlaceOf(GetText(table.record.stageCode), kStages);
    const int at = place.list == visitflow::BoardList::kBefore ? 0 : place.list == visitflow::BoardList::kFinished ? kPlaces - 1 : place.stage + 1;
    std::array<int, kPlaces>& balance = left[static_cast<std::size_t>(std::stoi(std::string(GetText(table.record.reservationNumber))))];
    --balance[0];
    ++balance[static_cast<std::size_t>(at)];
    if (balance != std::array<int, kPlaces>{}) ++found.lost;
    const std::string number(GetText(table.record.saleNumber));
    if (at > 0 && number.empty()) ++found.lost;
    if (!number.empty() && sales.erase(number) == 0) ++found.lost;
  }
  found.lost += plan.RowsOfPractice() - rows;
  found.twice = static_cast<int>(sales.size());
  return found;
}

// ---- the run

void Await(const std::atomic<int>& count, int value, int seconds, const char* what) {
  for (double end = Seconds() + seconds; count < value; os::SleepMilliseconds(20)) Check(Seconds() < end, what);
}

void Print(const Plan& plan, const Desk* desks, const Use& cost) {
  const auto sum = [&](auto Desk::* member) {
    auto all = desks[0].*member - desks[0].*member;
    for (int i = 0; i < plan.desks; ++i) all += desks[i].*member;
    return all;
  };
  for (int work = 0; work < kWorks; ++work) {
    std::vector<std::uint32_t> times;
    double trips = 0;
    for (int i = 0; i < plan.desks; ++i) {
      times.insert(times.end(), desks[i].microseconds[work], desks[i].microseconds[work] + desks[i].samples[work]);
      trips += static_cast<double>(desks[i].trips[work]);
    }
    std::sort(times.begin(), times.end());
    if (times.empty()) times.push_back(0);
    const auto at = [&](double part) { return times[static_cast<std::size_t>(static_cast<double>(times.size() - 1) * part)] / 1e3; };
    std::printf("  %-10s %8.1f /s   p50 %8.2f ms   p95 %8.2f ms   longest %8.2f ms   round trips %4.1f\n",
                kWorkNames[work], static_cast<double>(times.size()) / plan.seconds, at(0.5), at(0.95), at(1),
                trips / static_cast<double>(times.size()));
  }
  std::printf("  %d moves made, %d refused as another desk had made one first, %d operations failed, %d ticks left out\n",
              sum(&Desk::moves), sum(&Desk::refused), sum(&Desk::failed), sum(&Desk::late));
  std::printf("  the workstations together: %.2f of a processor\n", sum(&Desk::processor) / plan.seconds);
  if (testing::OnServer())
    std::printf("  the servers: %.2f of a processor, %.1f MB memory for each workstation\n", cost.seconds / plan.seconds,
                cost.megabytes / plan.desks);
}

int Main(const Plan& plan) {
  const std::string servers = testing::Environment("KOVA_SERVER_PIDS");
  Phase& phase = *Shared<Phase>(1);
  Desk* desks = Shared<Desk>(static_cast<std::size_t>(plan.desks));
  AwaitProcess(StartProcess([&] { MakePractices(plan); }));
  const Use alone = UseOf(servers);
  std::vector<pid_t> processes;
  for (int i = 0; i < plan.desks; ++i) {
    processes.push_back(StartProcess([&] {
      Receptionist receptionist(plan, i, desks[i]);
      ++phase.ready;
      Await(phase.begun, 1, 600, "the beginning");
      const Use before = UseOf(std::to_string(getpid()));
      receptionist.WorkUntil(Seconds() + plan.seconds);
      desks[i].processor = UseOf(std::to_string(getpid())).seconds - before.seconds;
      ++phase.done;
      Await(phase.ended, 1, 600, "the end");
    }));
    // One after the other: a server that just started takes a crowd for an attack.
    Await(phase.ready, i + 1, 60, "opening");
  }
  const Use before = UseOf(servers);
  phase.begun = 1;
  Await(phase.done, plan.desks, plan.seconds + 120, "the day");
  const Use after = UseOf(servers);
  phase.ended = 1;
  for (const pid_t process : processes) AwaitProcess(process);
  std::printf("%s: %d workstations of %d practices, %d s, pace %g\n",
              testing::OnServer() ? testing::Environment("KOVA_SERVER_KIND").c_str() : "a file", plan.desks, plan.practices,
              plan.seconds, plan.pace);
  Print(plan, desks, {after.seconds - before.seconds, after.megabytes - alone.megabytes});
  Differences* found = Shared<Differences>(static_cast<std::size_t>(plan.practices));
  AwaitProcess(StartProcess([&] {
    for (int i = 0; i < plan.practices; ++i) found[i] = Compare(plan, desks, i);
  }));
  Differences all;
  for (int i = 0; i < plan.practices; ++i) all.lost += found[i].lost, all.twice += found[i].twice;
  std::printf("  lost %d, made twice %d   aim 0, 0\n", all.lost, all.twice);
  return all.lost + all.twice == 0 ? 0 : 1;
}

}  // namespace
}  // namespace kova::bench

int main(int argc, char** argv) {
  kova::bench::Plan plan;
  if (argc > 1) plan.folder = argv[1];
  if (argc > 2) plan.desks = std::atoi(argv[2]);
  if (argc > 3) plan.practices = std::atoi(argv[3]);
  if (argc > 4) plan.seconds = std::atoi(argv[4]);
  if (argc > 5) plan.pace = std::atof(argv[5]);
  if (argc >= 2 && argc <= 6 && plan.practices > 0 && plan.desks >= plan.practices && plan.seconds > 0 && plan.pace > 0)
    return kova::bench::Main(plan);
  std::fprintf(stderr, "usage: desks_bench FOLDER [DESKS PRACTICES SECONDS PACE]\n");
  return 2;
}
