// base::Value's conversions between text, integers and doubles, over any
// bytes: as a string value, and the first bytes reinterpreted as an integer
// and as a double (NaN, infinities and huge magnitudes included).
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>

#include "base/value.h"
#include "fuzz_check.h"

namespace {

// Reads every view of `v`, printing into buffers of several sizes.
void ReadAll(const base::Value& v) {
  v.I64();
  v.U64();
  v.I32();
  v.U8();
  v.Bool();
  v.F64();
  v.F32();
  v.Str();
  char tiny[1], small[8], big[512];
  v.ToStr(nullptr, 0);
  v.ToStr(tiny, 0);
  v.ToStr(tiny, sizeof(tiny));
  v.ToStr(small, sizeof(small));
  if (const char* s = v.ToStr(big, sizeof(big))) FUZZ_EXPECT(std::strlen(s) < 4096);
}

template <typename T>
T Load(const uint8_t* data, size_t size) {
  T v{};
  std::memcpy(&v, data, size < sizeof(T) ? size : sizeof(T));
  return v;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  const size_t half = size / 2;

  base::Value s(text);
  base::Value part;
  part.Str(text.c_str(), static_cast<unsigned>(half));
  ReadAll(s);
  ReadAll(part);
  FUZZ_EXPECT(s.Cmp(s) == 0);
  s.CmpStr(part.Str());
  part.StrIfChanged(text.c_str(), static_cast<unsigned>(half));
  part.StrIfChanged(text.c_str() + half, static_cast<unsigned>(size - half));

  // Text read as numbers, then those numbers converted again.
  base::Value from_text_int(s.I64()), from_text_float(s.F64());
  ReadAll(from_text_int);
  ReadAll(from_text_float);

  const base::Value i(Load<long long>(data, size)), d(Load<double>(data, size));
  ReadAll(i);
  ReadAll(d);
  i.Cmp(d);
  d.CmpFloat(Load<double>(data + half, size - half));
  i.CmpInt(Load<long long>(data + half, size - half));

  base::Value copy;
  copy.Copy(s);
  FUZZ_EXPECT(copy.Cmp(s) == 0 || (!copy.Str() && !s.Str()));
  copy.Copy(d);
  copy.Str(copy.Str());  // its own (empty) text
  copy = s;
  copy.Str(copy.Str() + std::strlen(copy.Str()) / 2);  // a tail of its own text
  copy.Reset();
  ReadAll(copy);
  return 0;
}
