#include "cloud/loopback_server.h"

#include <algorithm>
#include <cctype>
#include <condition_variable>
#include <cstdlib>

#include "cloud/url_text.h"
#include "support/text.h"
#include "support/utf8.h"

namespace sodam {

namespace {

constexpr std::string_view blankLine = "\r\n\r\n";

std::string lower(std::string_view text) {
  std::string out(text);
  std::transform(out.begin(), out.end(), out.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return out;
}

// The announced body length: the first "Content-Length:" line's number, else 0.
long long contentLength(const std::string& header) {
  std::size_t start = 0;
  while (start <= header.size()) {
    const auto end = std::min(header.find("\r\n", start), header.size());
    const std::string line = header.substr(start, end - start);
    if (lower(line).rfind("content-length:", 0) == 0) {
      const std::string number = utf8::trim(line.substr(15));
      char* stop = nullptr;
      const long long value = std::strtoll(number.c_str(), &stop, 10);
      return !number.empty() && *stop == '\0' ? value : 0;
    }
    start = end + 2;
  }
  return 0;
}

bool urlSafe(std::string_view target) {
  return std::all_of(target.begin(), target.end(), [](char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte > 0x20 && byte < 0x7f;
  });
}

std::string page(std::string_view content) {
  return std::string(
             "<!doctype html><meta charset=utf-8><title>소담자리</title><body "
             "style=\"font-family:-apple-system,sans-serif;background:#0e1116;color:#fff;display:"
             "flex;align-items:center;justify-content:center;height:100vh;margin:0\">") +
         std::string(content);
}

}  // namespace

LoopbackRequest::Next LoopbackRequest::feed(std::string_view chunk, bool ended) {
  // The blank line may straddle chunks; the bytes before them were searched.
  const std::size_t from =
      buffer_.size() < blankLine.size() ? 0 : buffer_.size() - blankLine.size() + 1;
  buffer_.append(chunk);
  if (!headerEnd_) {
    const auto found = buffer_.find(blankLine, from);
    if (found == std::string::npos)
      return !ended && buffer_.size() <= limitBytes ? Next::read : Next::drop;
    headerEnd_ = found;
    header_ = buffer_.substr(0, found);
    if (!utf8::isValid(header_)) header_.clear();
    const long long announced = contentLength(header_);
    length_ = announced <= 0 ? 0 : std::min<std::size_t>(announced, limitBytes);
  }
  return complete(ended);
}

LoopbackRequest::Next LoopbackRequest::complete(bool ended) {
  const std::size_t bodyStart = *headerEnd_ + blankLine.size();
  const std::size_t atHand = buffer_.size() - bodyStart;
  if (atHand < length_ && !ended) return Next::read;
  body_ = buffer_.substr(bodyStart, limitBytes);
  return Next::answer;
}

std::optional<LoopbackValues> loopbackValues(std::string_view header, std::string_view body) {
  const std::string_view line = header.substr(0, header.find("\r\n"));
  std::vector<std::string_view> parts;
  for (std::size_t start = 0; start < line.size();) {
    const auto blank = std::min(line.find(' ', start), line.size());
    if (blank > start) parts.push_back(line.substr(start, blank - start));
    start = blank + 1;
  }
  if (parts.size() < 2) return std::nullopt;
  const std::string_view method = parts[0], target = parts[1];
  if (target.empty() || target[0] != '/' || !urlSafe(target)) return std::nullopt;
  const auto queryAt = target.find('?');
  const std::string_view path = target.substr(0, std::min(queryAt, target.find('#')));
  if (path != "/done") return std::nullopt;
  std::optional<LoopbackValues> values;
  if (method == "POST") {
    std::string form(body);
    std::string spaced;
    for (char c : form)
      spaced += c == '+' ? std::string("%20") : std::string(1, c);
    values = parseQuery(spaced);
  } else if (method == "GET" && queryAt != std::string_view::npos) {
    std::string_view query = target.substr(queryAt + 1);
    values = parseQuery(query.substr(0, query.find('#')));
  }
  return values.value_or(LoopbackValues{});
}

std::string loopbackAnswer(bool accepted) {
  const std::string body =
      accepted ? page(
                     "<div style=\"text-align:center\"><div "
                     "style=\"font-size:22px;font-weight:700\">로그인했어요</div><div "
                     "style=\"color:#9aa3ad;margin-top:8px\">이 탭을 닫고 소담자리로 "
                     "돌아가세요</div></div>")
               : page(
                     "<div style=\"text-align:center;color:#9aa3ad\">요청을 확인하지 "
                     "못했어요.<br>소담자리에서 로그인을 다시 눌러 주세요.</div>");
  return format(
             "HTTP/1.1 200 OK\r\nContent-Type: text/html; charset=utf-8\r\n"
             "Content-Length: %zu\r\nConnection: close\r\nCache-Control: no-store\r\n"
             "Referrer-Policy: no-referrer\r\n\r\n",
             body.size()) +
         body;
}

struct LoopbackServer::Gate {
  struct Question {
    bool started = false;
    std::optional<bool> answer;
  };
  std::mutex mutex;
  std::condition_variable answered;
  bool stopped = false;
};

LoopbackServer::LoopbackServer(std::unique_ptr<LoopbackListener> listener, Scheduler& scheduler,
                               Handle handle)
    : listener_(std::move(listener)),
      scheduler_(scheduler),
      handle_(std::move(handle)),
      gate_(std::make_shared<Gate>()) {}

LoopbackServer::~LoopbackServer() {
  stop();
  self_.reset();
}

void LoopbackServer::start(std::function<void(std::optional<int>)> ready) {
  if (!listener_) {
    scheduler_.post(weakCall(self_, [ready](LoopbackServer&) { ready(std::nullopt); }));
    return;
  }
  LoopbackListener::Events events;
  events.ready = [scheduler = &scheduler_, self = self_, ready](std::optional<int> port) {
    scheduler->post(weakCall(self, [ready, port](LoopbackServer&) { ready(port); }));
  };
  // The listener's queue may outlive the server: it holds the gate and asks
  // the server only while it lives.
  events.exchange = [gate = gate_, scheduler = &scheduler_,
                     weak = std::weak_ptr<LoopbackServer*>(self_)](const LoopbackRequest& request) {
    const auto values = loopbackValues(request.header(), request.body());
    if (!values) return loopbackAnswer(false);
    auto question = std::make_shared<Gate::Question>();
    std::unique_lock lock(gate->mutex);
    if (gate->stopped) return loopbackAnswer(false);
    scheduler->post([gate, question, weak, values = *values] {
      std::unique_lock inner(gate->mutex);
      auto alive = weak.lock();
      if (gate->stopped || !alive || !*alive) {
        question->answer = false;
      } else {
        question->started = true;
        inner.unlock();
        const bool accepted = (*alive)->handle_(values);
        inner.lock();
        question->answer = accepted;
      }
      gate->answered.notify_all();
    });
    gate->answered.wait(lock, [&] {
      return question->answer.has_value() || (gate->stopped && !question->started);
    });
    return loopbackAnswer(question->answer.value_or(false));
  };
  listener_->start(std::move(events));
}

void LoopbackServer::stop() {
  {
    std::lock_guard lock(gate_->mutex);
    if (gate_->stopped) return;
    gate_->stopped = true;
  }
  gate_->answered.notify_all();
  if (listener_) listener_->stop();
}

}  // namespace sodam
