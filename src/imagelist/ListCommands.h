#pragma once
// The work behind the mxil program, callable from tests:
//
//   create OUT.lIL --key K --size WxH IMG...   a list of the pictures, each keyed by its file
//                                              name without extension
//   list FILE.lIL                              key=K count=N width=W height=H, then one line
//                                              index=I key=K tag=T per image
//   extract FILE.lIL INDEX OUT.png             one image (by number, or by key) as PNG
//   import-frm FORM.frm OUTDIR                 one ImageList_<key>.lIL per list in the form
//
// Exit codes: 0 done, 1 a file that cannot be read or written or a refused list (message on
// err), 2 bad arguments (usage on err).
#include <iosfwd>
#include <string>
#include <vector>

namespace mx::imagelist {

[[nodiscard]] int RunImageListCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);

}  // namespace mx::imagelist
