// HTTP/1.1 messages as the device server needs them: request heads in, answers out.
#pragma once

#include <chrono>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace workbench {

// The first line of one request.
struct HttpRequest {
  std::string method;
  std::string target;
  std::string head;  // the header lines, each between line ends
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

  std::size_t padBefore = 0;  // blanks in front of the body

  // Sent instead of a response, byte for byte; the connection is closed behind it.
  std::optional<std::string> raw{};

  std::chrono::milliseconds delay{0};  // before the first byte
  std::size_t pieceSize = 0;           // bytes per send; 0: everything at once
  std::chrono::milliseconds pause{0};  // between pieces
};

// The bytes of an answer. `document` is the body to use when the answer has none of its own.
[[nodiscard]] std::string Render(const Answer& answer, std::string document);

}  // namespace workbench
