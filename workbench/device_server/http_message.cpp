#include "workbench/device_server/http_message.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace workbench {
namespace {

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

std::optional<HttpRequest> ParseRequestHead(std::string_view head) {
  const std::size_t end = std::min(head.find("\r\n"), head.size());
  const std::string_view line = head.substr(0, end);
  const std::size_t first = line.find(' ');
  const std::size_t last = line.rfind(' ');
  if (first == std::string_view::npos || last <= first + 1 || !line.substr(last + 1).starts_with("HTTP/1."))
    return std::nullopt;
  return HttpRequest{std::string(line.substr(0, first)),
                     std::string(line.substr(first + 1, last - first - 1)),
                     std::string(head.substr(end)) + "\r\n"};
}

std::string Render(const Answer& answer, std::string document) {
  if (answer.raw) return *answer.raw;
  std::string body = answer.body ? *answer.body : std::move(document);
  body.insert(0, answer.padBefore, ' ');
  std::string bytes =
      "HTTP/1.1 " + std::to_string(answer.status) + (answer.status == 200 ? " OK" : " Failed");
  bytes += "\r\nContent-Type: " + answer.contentType + "\r\nCache-Control: no-store\r\nConnection: close\r\n";
  if (answer.framing == Framing::ContentLength)
    bytes += "Content-Length: " + std::to_string(body.size()) + "\r\n";
  if (answer.framing == Framing::Chunked) bytes += "Transfer-Encoding: chunked\r\n";
  return bytes + "\r\n" + (answer.framing == Framing::Chunked ? Chunked(body) : body);
}

}  // namespace workbench
