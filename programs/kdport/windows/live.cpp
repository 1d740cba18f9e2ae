#include "kdport/windows/live.h"

#include <algorithm>
#include <condition_variable>
#include <exception>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <utility>

#include "base/unique_handle.h"
#include "status/status_download.h"

namespace KdPort {

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::size_t kMostAtOnce = 16;

// What the asking threads and the one that waits for them share.
struct Board {
  std::mutex lock;
  std::condition_variable changed;
};

// One device server. The platform's own time-outs are too long and cannot be relied on: a thread that waits
// too long is left to itself and keeps this alive.
class CServerQuestion {
 public:
  CServerQuestion(std::shared_ptr<Board> board, std::chrono::milliseconds timeout)
      : board_(std::move(board)), timeout_(timeout) {}

  void Add(const PortWebAddress& port, std::size_t place) {
    ports_.push_back(port);
    places_.push_back(place);
  }

  static void Begin(const std::shared_ptr<CServerQuestion>& question) {
    question->deadline_ = Clock::now() + question->timeout_;
    auto own = std::make_unique<std::shared_ptr<CServerQuestion>>(question);
    const CKernelHandle thread(CreateThread(nullptr, 0, Run, own.get(), 0, nullptr));
    if (thread) {
      static_cast<void>(own.release());
    } else {
      question->over_ = question->failed_ = true;
    }
  }

  // With the board locked.
  [[nodiscard]] Clock::time_point Deadline() const { return deadline_; }
  [[nodiscard]] bool IsOver() {
    if (!over_ && Clock::now() >= deadline_) over_ = failed_ = true;
    return over_;
  }
  void Give(Documents& documents) {
    for (std::size_t i = 0; !failed_ && i < places_.size(); ++i) documents[places_[i]] = answers_[i];
  }

 private:
  static DWORD WINAPI Run(void* given) {
    const std::unique_ptr<std::shared_ptr<CServerQuestion>> own(
        static_cast<std::shared_ptr<CServerQuestion>*>(given));
    (*own)->Ask();
    return 0;
  }
  void Ask() {
    for (const PortWebAddress& port : ports_) {
      std::optional<CWideString> answer;
      try {
        answer = FetchStatusDocument(port);
      } catch (const std::exception&) {
        answer.reset();
      }
      if (!Accept(std::move(answer))) return;
    }
  }
  // Whether there is more to ask.
  bool Accept(std::optional<CWideString> answer) {
    const std::lock_guard locked(board_->lock);
    if (over_) return false;
    failed_ = !answer;
    answers_.push_back(std::move(answer));
    over_ = failed_ || answers_.size() == ports_.size();
    deadline_ = Clock::now() + timeout_;
    board_->changed.notify_all();
    return !over_;
  }

  std::shared_ptr<Board> board_;
  std::chrono::milliseconds timeout_;
  std::vector<PortWebAddress> ports_;
  std::vector<std::size_t> places_;  // in the list of all ports
  Documents answers_;
  Clock::time_point deadline_;
  bool over_ = false;
  bool failed_ = false;
};

using Questions = std::vector<std::shared_ptr<CServerQuestion>>;

Questions ByServer(const std::vector<PortWebAddress>& ports, const std::shared_ptr<Board>& board,
                   std::chrono::milliseconds timeout) {
  std::map<std::pair<std::wstring, std::uint16_t>, std::shared_ptr<CServerQuestion>> servers;
  Questions questions;
  for (std::size_t i = 0; i < ports.size(); ++i) {
    auto& question = servers[{std::wstring(ports[i].host.View()), ports[i].webPort}];
    if (!question) {
      question = std::make_shared<CServerQuestion>(board, timeout);
      questions.push_back(question);
    }
    question->Add(ports[i], i);
  }
  return questions;
}

}  // namespace

Documents FetchDocuments(const std::vector<PortWebAddress>& ports, std::chrono::milliseconds timeout) {
  const auto board = std::make_shared<Board>();
  const Questions questions = ByServer(ports, board, timeout);
  Documents documents(ports.size());
  Questions active;
  std::size_t begun = 0;
  std::unique_lock locked(board->lock);
  while (begun < questions.size() || !active.empty()) {
    for (; begun < questions.size() && active.size() < kMostAtOnce; ++begun) {
      active.push_back(questions[begun]);
      CServerQuestion::Begin(active.back());
    }
    const auto next = std::ranges::min_element(active, {}, &CServerQuestion::Deadline);
    if (std::ranges::none_of(active, &CServerQuestion::IsOver)) {
      board->changed.wait_until(locked, (*next)->Deadline());
    }
    std::erase_if(active, [](const auto& question) { return question->IsOver(); });
  }
  for (const auto& question : questions) question->Give(documents);
  return documents;
}

}  // namespace KdPort
