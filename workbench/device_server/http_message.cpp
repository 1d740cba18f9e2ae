#include "workbench/device_server/http_message.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdio>

namespace workbench {
namespace {

constexpr char LowerAscii(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}
constexpr char UpperAscii(char c) {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

std::string Lower(std::string_view text) {
  std::string lower(text);
  std::ranges::transform(lower, lower.begin(), LowerAscii);
  return lower;
}

std::string_view Trim(std::string_view text) {
  const auto first = text.find_first_not_of(" \t");
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

// Cuts the next line off `text`; the line comes without its end.
std::string_view TakeLine(std::string_view& text) {
  const auto end = text.find("\r\n");
  const std::string_view line = text.substr(0, end);
  text.remove_prefix(end == std::string_view::npos ? text.size() : end + 2);
  return line;
}

bool ParseRequestLine(std::string_view line, HttpRequest& request) {
  const auto first = line.find(' ');
  const auto last = line.rfind(' ');
  if (first == std::string_view::npos || first == 0 || last <= first + 1) return false;
  request.method = line.substr(0, first);
  request.target = line.substr(first + 1, last - first - 1);
  request.version = line.substr(last + 1);
  const bool known = request.version == "HTTP/1.1" || request.version == "HTTP/1.0";
  return known && request.target.front() == '/' && request.target.find(' ') == std::string::npos;
}

const char* ReasonOf(int status) {
  struct Row {
    int status;
    const char* reason;
  };
  static constexpr std::array kRows = {Row{200, "OK"},
                                       Row{204, "No Content"},
                                       Row{301, "Moved"},
                                       Row{400, "Bad Request"},
                                       Row{401, "Unauthorized"},
                                       Row{403, "Forbidden"},
                                       Row{404, "Not Found"},
                                       Row{405, "Method Not Allowed"},
                                       Row{431, "Request Header Fields Too Large"},
                                       Row{500, "Internal Server Error"},
                                       Row{503, "Service Unavailable"}};
  const auto* row = std::ranges::find(kRows, status, &Row::status);
  return row == kRows.end() ? "Unknown" : row->reason;
}

std::string BodyOf(const Answer& answer, std::string document) {
  std::string body = answer.body ? *answer.body : std::move(document);
  if (answer.capitals) std::ranges::transform(body, body.begin(), UpperAscii);
  body.insert(0, answer.padBefore, ' ');
  body.append(answer.padAfter, ' ');
  if (answer.zeroAt) body.insert(std::min(*answer.zeroAt, body.size()), 1, '\0');
  return body;
}

// Chunks of 1000 bytes, so that a document of ordinary size has more than one when it is padded.
std::string Chunked(std::string_view body) {
  std::string chunks;
  while (!body.empty()) {
    const std::string_view chunk = body.substr(0, 1000);
    std::array<char, 20> length{};
    std::snprintf(length.data(), length.size(), "%zx\r\n", chunk.size());
    chunks.append(length.data()).append(chunk).append("\r\n");
    body.remove_prefix(chunk.size());
  }
  return chunks + "0\r\n\r\n";
}

}  // namespace

const std::string* HttpRequest::Header(std::string_view name) const {
  const auto header = std::ranges::find(headers, name, &std::pair<std::string, std::string>::first);
  return header == headers.end() ? nullptr : &header->second;
}

std::string HttpRequest::Path() const {
  return target.substr(0, target.find('?'));
}

bool HttpRequest::KeepsConnection() const {
  const std::string* connection = Header("connection");
  const std::string wish = connection ? Lower(*connection) : std::string();
  if (version == "HTTP/1.0") return wish == "keep-alive";
  return wish != "close";
}

std::optional<std::size_t> HttpRequest::BodyLength() const {
  if (Header("transfer-encoding")) return std::nullopt;
  const std::string* text = Header("content-length");
  if (!text) return 0;
  std::size_t length = 0;
  const auto [end, error] = std::from_chars(text->data(), text->data() + text->size(), length);
  if (error != std::errc{} || end != text->data() + text->size()) return std::nullopt;
  return length;
}

std::optional<HttpRequest> ParseRequestHead(std::string_view head) {
  HttpRequest request;
  if (!ParseRequestLine(TakeLine(head), request)) return std::nullopt;
  while (!head.empty()) {
    const std::string_view line = TakeLine(head);
    if (line.empty()) break;
    const auto colon = line.find(':');
    if (colon == std::string_view::npos || colon == 0) return std::nullopt;
    request.headers.emplace_back(Lower(line.substr(0, colon)), Trim(line.substr(colon + 1)));
  }
  return request;
}

RenderedAnswer Render(const Answer& answer, const HttpRequest& request, std::string document) {
  if (answer.raw) return {*answer.raw, false};
  const std::string body = BodyOf(answer, std::move(document));
  const bool keeps = request.KeepsConnection() && answer.framing != Framing::UntilClose && !answer.closeAfter;
  std::string bytes = "HTTP/1.1 " + std::to_string(answer.status) + " " + ReasonOf(answer.status) + "\r\n";
  bytes += "Content-Type: " + answer.contentType + "\r\nCache-Control: no-store\r\n";
  bytes += keeps ? "Connection: keep-alive\r\n" : "Connection: close\r\n";
  if (answer.status == 405) bytes += "Allow: GET, HEAD\r\n";
  if (answer.framing == Framing::ContentLength)
    bytes += "Content-Length: " + std::to_string(body.size()) + "\r\n";
  if (answer.framing == Framing::Chunked) bytes += "Transfer-Encoding: chunked\r\n";
  bytes += "\r\n";
  if (request.method != "HEAD") bytes += answer.framing == Framing::Chunked ? Chunked(body) : body;
  return {std::move(bytes), keeps};
}

}  // namespace workbench
