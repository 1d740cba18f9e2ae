#include "workbench/machine/models/desktop.h"

namespace workbench {
int Desktop::Show(HWND owner, const wchar_t* text, const wchar_t* caption, UINT style) {
  MessageBoxRecord box{.owner = owner,
                       .text = text == nullptr ? L"" : text,
                       .caption = caption == nullptr ? L"Error" : caption,
                       .style = style};
  if (answerer_) {
    box.answer = answerer_(box);
  } else if (!answers_.empty()) {
    box.answer = answers_.front();
    answers_.pop_front();
  } else {
    box.answer =
        show_ ? MessageBoxW(owner, text, caption, style) : ((style & MB_TYPEMASK) == MB_OK ? IDOK : IDNO);
  }
  messageBoxes.push_back(box);
  return box.answer;
}

}  // namespace workbench
