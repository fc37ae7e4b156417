#include "engine/file_types.h"

namespace tarnby {

// "lqr" stands twice: others read the list entry by entry, and a search is none the worse for it.
std::vector<std::string> archive_extensions() {
  return {"7z",  "s7z",    "zip",  "z01",   "rar", "r00",   "r01",  "r02", "r03",    "r04", "r05", "r06",
          "r07", "lha",    "lzh",  "zipx",  "sit", "sitx",  "hqx",  "bin", "macbin", "as",  "gz",  "gzip",
          "tgz", "tar-gz", "bz2",  "bzip2", "bz",  "tbz",   "tbz2", "xz",  "txz",    "tar", "iso", "cdi",
          "nrg", "mdf",    "gtar", "z",     "taz", "tar-z", "lzma", "xar", "xip",    "arj", "arc", "pak",
          "apk", "spk",    "zoo",  "lbr",   "lqr", "lqr",   "lzr",  "pma", "cab",    "rpm", "deb", "alz",
          "dd",  "cpt",    "pit",  "sea",   "exe", "msi",   "cpgz", "warc"};
}

std::vector<std::string> audio_extensions() {
  return {"aa",  "aac", "aax",  "aiff", "amr", "ape", "awb", "flac", "m4a", "m4b", "m4p", "mp3", "ac3",
          "ogg", "oga", "mogg", "wav",  "wma", "wv",  "pcm", "alac", "au",  "mp2", "dts", "mka", "m4r"};
}

std::vector<std::string> document_extensions() {
  return {"csv", "dbk",    "doc", "docx", "docm", "dot",  "dotx", "egt", "epub",  "gdoc",    "html", "odm", "odoc",
          "odt", "osheet", "ott", "pda",  "pdf",  "rtf",  "info", "txt", "wps",   "wpt",     "xml",  "xps", "htm",
          "xls", "xlsx",   "ods", "ppt",  "pptx", "fods", "odg",  "odp", "pages", "numbers", "key",  "djvu"};
}

std::vector<std::string> movie_extensions() {
  return {"mp4", "m4v", "mkv",  "mov", "avi", "mpg", "mpeg", "vob", "flv", "swf",
          "asf", "wmv", "webm", "ogv", "dv",  "amv", "mtv",  "mts", "dpg", "ts"};
}

std::vector<std::string> picture_extensions() {
  return {"ai",  "jpg",      "jpeg",    "jfif",   "png", "tiff", "psd", "eps", "indd", "raw", "swg",
          "bmp", "afdesign", "afphoto", "sketch", "sct", "pbm",  "pxr", "pcx", "mpo",  "jps", "jpm",
          "iff", "dcm",      "gif",     "psb",    "cdr", "tif",  "pns", "dwg", "sket"};
}

}  // namespace tarnby
