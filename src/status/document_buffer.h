// Where a status document arrives. Portable.
#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <string_view>

// Receives an answer in pieces, each to the front of the same buffer: a status document is meant to arrive in
// one piece, and of a longer answer the last piece counts. Nothing is allocated. One object serves one
// thread.
class CDocumentBuffer {
 public:
  static constexpr std::size_t kPieceBytes = 4096;

  // The room for the next piece, over the one before.
  [[nodiscard]] std::span<char, kPieceBytes> Room() noexcept {
    return std::span<char, kPieceBytes>(bytes_.data(), kPieceBytes);
  }
  // To be called with the number of bytes that were written to Room(), at most kPieceBytes. 0, the end of an
  // answer, leaves the document as it is.
  void Accept(std::size_t count) noexcept;
  // The document: the bytes of the last piece up to the first zero byte. Valid until the next piece.
  [[nodiscard]] std::string_view Document() const noexcept { return bytes_.data(); }

 private:
  std::array<char, kPieceBytes + 1> bytes_{};  // room for a terminator behind a full piece
};
