// The limits that the benchmarks hold the module against: plain copies, conversions, writes and posts, timed in the
// processor time of the calling thread; and parts of the module that are measured on their own.
#include <libyuv.h>
#include <napi.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <time.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <thread>
#include <vector>

#include "desktop.h"
#include "images.h"
#include "thread_copies.h"

namespace {

int64_t threadCpuNs() {
  timespec now{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return static_cast<int64_t>(now.tv_sec) * 1000000000 + now.tv_nsec;
}

Napi::Value jsThreadCpuNs(const Napi::CallbackInfo& info) {
  return Napi::Number::New(info.Env(), static_cast<double>(threadCpuNs()));
}

Napi::Value jsPageFaults(const Napi::CallbackInfo& info) {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return Napi::Number::New(info.Env(), static_cast<double>(usage.ru_minflt));
}

// Sources that a loop over them never finds in the caches.
class ColdSources {
 public:
  explicit ColdSources(size_t size) : size_(size), count_(256u * 1024 * 1024 / size + 1) {
    memory_.resize(size_ * count_, 0x5a);
  }
  const uint8_t* next() { return memory_.data() + size_ * (at_++ % count_); }

 private:
  size_t size_;
  size_t count_;
  size_t at_ = 0;
  std::vector<uint8_t> memory_;
};

// copyCold(bytes, count): nanoseconds of one memcpy from a cold source into one target that stays the same.
Napi::Value jsCopyCold(const Napi::CallbackInfo& info) {
  const auto size = static_cast<size_t>(info[0].As<Napi::Number>().Int64Value());
  const int64_t count = info[1].As<Napi::Number>().Int64Value();
  ColdSources sources(size);
  std::vector<uint8_t> target(size, 1);
  const int64_t start = threadCpuNs();
  for (int64_t i = 0; i < count; ++i) {
    std::memcpy(target.data(), sources.next(), size);
    __asm__ volatile("" : : "r"(target.data()) : "memory");
  }
  return Napi::Number::New(info.Env(), static_cast<double>(threadCpuNs() - start) / static_cast<double>(count));
}

// copyPieces([source, ...], target): nanoseconds of one memcpy of each source, back to back into the target.
Napi::Value jsCopyPieces(const Napi::CallbackInfo& info) {
  const auto pieces = info[0].As<Napi::Array>();
  auto target = info[1].As<Napi::Uint8Array>();
  std::vector<Napi::Uint8Array> sources;
  for (uint32_t i = 0; i < pieces.Length(); ++i) sources.push_back(pieces.Get(i).As<Napi::Uint8Array>());
  uint8_t* to = target.Data();
  const uint8_t* const end = to + target.ByteLength();
  const int64_t start = threadCpuNs();
  for (const Napi::Uint8Array& source : sources) {
    if (source.ByteLength() > static_cast<size_t>(end - to)) return info.Env().Undefined();
    std::memcpy(to, source.Data(), source.ByteLength());
    to += source.ByteLength();
  }
  __asm__ volatile("" : : "r"(target.Data()) : "memory");
  return Napi::Number::New(info.Env(), static_cast<double>(threadCpuNs() - start));
}

// Memory that nothing has used before and that is never given back, as that of RGBA frames.
uint8_t* mapPages(size_t size) {
  void* pages = mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (pages == MAP_FAILED) std::abort();
  return static_cast<uint8_t*>(pages);
}

// convertCold(width, height, count, fresh): nanoseconds of one I420ToABGR from a cold source, into one target or, when
// `fresh`, into zeroed memory that was never touched.
Napi::Value jsConvertCold(const Napi::CallbackInfo& info) {
  const int width = info[0].As<Napi::Number>().Int32Value();
  const int height = info[1].As<Napi::Number>().Int32Value();
  const int64_t count = info[2].As<Napi::Number>().Int64Value();
  const bool fresh = info[3].As<Napi::Boolean>().Value();
  const auto pixels = static_cast<size_t>(width) * static_cast<size_t>(height);
  ColdSources sources(pixels * 3 / 2);
  std::unique_ptr<uint8_t, decltype(&std::free)> kept(static_cast<uint8_t*>(std::calloc(pixels, 4)), &std::free);
  std::memset(kept.get(), 1, pixels * 4);
  const int64_t start = threadCpuNs();
  for (int64_t i = 0; i < count; ++i) {
    const uint8_t* y = sources.next();
    const uint8_t* u = y + pixels;
    uint8_t* target = fresh ? mapPages(pixels * 4) : kept.get();
    libyuv::I420ToABGR(y, width, u, width / 2, u + pixels / 4, width / 2, target, width * 4, width, height);
  }
  const int64_t spent = threadCpuNs() - start;
  return Napi::Number::New(info.Env(), static_cast<double>(spent) / static_cast<double>(count));
}

// copyBuffers(bytes, count): nanoseconds of one Buffer with a copy of so many bytes.
Napi::Value jsCopyBuffers(const Napi::CallbackInfo& info) {
  const std::vector<uint8_t> source(static_cast<size_t>(info[0].As<Napi::Number>().Int64Value()), 1);
  const int64_t count = info[1].As<Napi::Number>().Int64Value();
  const int64_t start = threadCpuNs();
  for (int64_t i = 0; i < count; ++i) {
    const Napi::HandleScope scope(info.Env());
    Napi::Buffer<uint8_t>::Copy(info.Env(), source.data(), source.size());
  }
  return Napi::Number::New(info.Env(), static_cast<double>(threadCpuNs() - start) / static_cast<double>(count));
}

// writeLines(path, line, count): nanoseconds of one fwrite and fflush of the line.
Napi::Value jsWriteLines(const Napi::CallbackInfo& info) {
  const std::string path = info[0].As<Napi::String>().Utf8Value();
  const std::string line = info[1].As<Napi::String>().Utf8Value();
  const int64_t count = info[2].As<Napi::Number>().Int64Value();
  FILE* file = std::fopen(path.c_str(), "w+");
  if (file == nullptr) return info.Env().Undefined();
  const int64_t start = threadCpuNs();
  for (int64_t i = 0; i < count; ++i) {
    std::fwrite(line.data(), 1, line.size(), file);
    std::fflush(file);
  }
  const int64_t spent = threadCpuNs() - start;
  std::fclose(file);
  return Napi::Number::New(info.Env(), static_cast<double>(spent) / static_cast<double>(count));
}

void callWithNumber(Napi::Env env, Napi::Function function, std::nullptr_t*, double* number) {
  const std::unique_ptr<double> owner(number);
  if (static_cast<napi_env>(env) == nullptr) return;
  function.Call({Napi::Number::New(env, *number)});
}

// postNumbers(count, callback): posts the numbers 1 to `count` from a thread of its own, one heap block each.
Napi::Value jsPostNumbers(const Napi::CallbackInfo& info) {
  const int64_t count = info[0].As<Napi::Number>().Int64Value();
  using Function = Napi::TypedThreadSafeFunction<std::nullptr_t, double, &callWithNumber>;
  Function function = Function::New(info.Env(), info[1].As<Napi::Function>(), "postNumbers", 0, 1);
  std::thread([function, count]() mutable {
    for (int64_t i = 1; i <= count; ++i) {
      auto* number = new double(static_cast<double>(i));
      if (function.BlockingCall(number) != napi_ok) delete number;
    }
    function.Release();
  }).detach();
  return info.Env().Undefined();
}

Napi::Object initialize(Napi::Env env, Napi::Object exports) {
  exports.Set("threadCpuNs", Napi::Function::New<jsThreadCpuNs>(env, "threadCpuNs"));
  exports.Set("pageFaults", Napi::Function::New<jsPageFaults>(env, "pageFaults"));
  exports.Set("copyCold", Napi::Function::New<jsCopyCold>(env, "copyCold"));
  exports.Set("copyThroughThread", Napi::Function::New<corvane::bench::jsCopyThroughThread>(env, "copyThroughThread"));
  exports.Set("copyPieces", Napi::Function::New<jsCopyPieces>(env, "copyPieces"));
  exports.Set("convertCold", Napi::Function::New<jsConvertCold>(env, "convertCold"));
  exports.Set("copyBuffers", Napi::Function::New<jsCopyBuffers>(env, "copyBuffers"));
  exports.Set("writeLines", Napi::Function::New<jsWriteLines>(env, "writeLines"));
  exports.Set("postNumbers", Napi::Function::New<jsPostNumbers>(env, "postNumbers"));
  exports.Set("paintDesktop", Napi::Function::New<corvane::bench::jsPaintDesktop>(env, "paintDesktop"));
  exports.Set("encodeImage", Napi::Function::New<corvane::bench::jsEncodeImage>(env, "encodeImage"));
  return exports;
}

}  // namespace

NODE_API_MODULE(bench_native, initialize)
