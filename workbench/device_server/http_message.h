// HTTP/1.1 messages as the device server needs them: request heads in, answers out.
#pragma once

#include <chrono>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace workbench {

// The head of one request. Header names are in lower case, values without surrounding blanks.
struct HttpRequest {
  std::string method;
  std::string target;   // as sent, with the query if there is one
  std::string version;  // "HTTP/1.1"
  std::vector<std::pair<std::string, std::string>> headers;

  // The value of a header (lower-case name), or null.
  [[nodiscard]] const std::string* Header(std::string_view name) const;
  // The target without its query.
  [[nodiscard]] std::string Path() const;
  // Whether the client wants the connection kept after the answer.
  [[nodiscard]] bool KeepsConnection() const;
  // Length of the body that follows the head; nothing when it cannot be told.
  [[nodiscard]] std::optional<std::size_t> BodyLength() const;
};

// Reads a head: everything before the empty line. Nothing when it is not HTTP/1.x.
[[nodiscard]] std::optional<HttpRequest> ParseRequestHead(std::string_view head);

// How the client learns where the body ends.
enum class Framing { ContentLength, Chunked, UntilClose };

// What to answer on a path, and how to misbehave while doing so.
struct Answer {
  int status = 200;
  std::string contentType = "text/html";
  std::optional<std::string> body{};  // nothing: the document that the path has anyway
  Framing framing = Framing::ContentLength;

  // Changes to the body, in this order.
  bool capitals = false;                // ASCII letters in capitals
  std::size_t padBefore = 0;            // blanks in front
  std::size_t padAfter = 0;             // blanks behind
  std::optional<std::size_t> zeroAt{};  // a zero byte put in at this offset (at the end when it is shorter)

  // Sent instead of a response, byte for byte; the connection is closed behind it.
  std::optional<std::string> raw{};

  std::chrono::milliseconds delay{0};       // before the first byte
  std::size_t pieceSize = 0;                // bytes per send; 0: everything at once
  std::chrono::milliseconds pause{0};       // between pieces
  std::optional<std::size_t> closeAfter{};  // the connection is closed after that many bytes of the response
};

// The bytes of an answer, and whether the connection can serve another request afterwards.
struct RenderedAnswer {
  std::string bytes;
  bool keepsConnection = false;
};
// `document` is the body to use when the answer has none of its own.
[[nodiscard]] RenderedAnswer Render(const Answer& answer, const HttpRequest& request, std::string document);

}  // namespace workbench
