// Where a status document arrives. Portable.
#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <string_view>

// Receives an answer in pieces, each to the front of the same buffer: a document is meant to arrive in one
// piece, and of a longer one the last piece is what counts.
class CDocumentBuffer {
 public:
  static constexpr std::size_t kPieceBytes = 4096;

  // Where the next piece goes.
  [[nodiscard]] std::span<char, kPieceBytes> Room() noexcept {
    return std::span<char, kPieceBytes>(bytes_.data(), kPieceBytes);
  }
  // Takes note of a piece of `count` bytes, at most kPieceBytes. An empty one, which is how an answer ends,
  // leaves the document as it is.
  void Accept(std::size_t count) noexcept;
  // The document: the bytes of the last piece up to the first zero byte. Valid until the next piece.
  [[nodiscard]] std::string_view Document() const noexcept { return bytes_.data(); }

 private:
  std::array<char, kPieceBytes + 1> bytes_{};  // room for a terminator behind a full piece
};
