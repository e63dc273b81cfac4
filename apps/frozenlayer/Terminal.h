#pragma once

namespace qnl {

bool ErrorIsTerminal();

/// Makes a console that expects another encoding take the program's UTF-8 texts.
void UseUtf8Output();

}  // namespace qnl
