#include "status/document_buffer.h"

#include <algorithm>

void CDocumentBuffer::Accept(std::size_t count) noexcept {
  // The terminator goes behind the piece, so that nothing of an earlier, longer one shines through.
  if (count > 0) bytes_[std::min(count, kPieceBytes)] = '\0';
}
