// The kernels' side of a reduction: rows cut into strips, the channel of interest gathered, vectors with the lanes that
// take part (include after core/kernels.h; read once a width).
//
//   ForEachStrip<T, Pair>(sources, rows, [&](const Strip<T>& s) {
//     Feed<T, Pair, Masked>(s, [&](auto, auto keep, auto a, auto b) { ... Kept(d, keep, value) ... });
//   });
//
// Signed bytes come as their bits in unsigned lanes: flip the sign bit to get their order.
#if defined(ORV_STRIPS_TOGGLE) == defined(HWY_TARGET_TOGGLE)
#ifdef ORV_STRIPS_TOGGLE
#undef ORV_STRIPS_TOGGLE
#else
#define ORV_STRIPS_TOGGLE
#endif
KERNELS_BEGIN

// The inlined lambda of Feed() and ForEachStrip().
#define FEED(...) [&](__VA_ARGS__) __attribute__((always_inline))

template <class T>
using Bits = std::conditional_t<std::is_same<T, int8_t>::value, uint8_t, T>;
template <class T>
using Tag = hn::ScalableTag<Bits<T>>;
template <class T>
constexpr ptrdiff_t kLanes = HWY_MAX_BYTES / sizeof(T);

// A piece of row `y` from column `x` on: contiguous elements and their mask bytes.
template <class T>
struct Strip {
  const Bits<T>*a, *b;
  const uint8_t* mask;
  ptrdiff_t y, x, count;
};

// Elements of a gathered channel stay in the cache; without gathering a strip may be longer.
constexpr ptrdiff_t kGathered = 2048, kDirect = 16384;

// Channel C of `count` three-channel pixels.
template <int C, class D, class B>
HWY_INLINE ptrdiff_t GatherVectors(D d, const B* pixels, ptrdiff_t x, ptrdiff_t count, B* channel) {
  for (; x + (ptrdiff_t)hn::MaxLanes(d) <= count; x += (ptrdiff_t)hn::MaxLanes(d)) {
    hn::VFromD<D> v[3];
    hn::LoadInterleaved3(d, pixels + 3 * x, v[0], v[1], v[2]);
    hn::StoreU(v[C], d, channel + x);
  }
  return x;
}
template <int C, class B>
HWY_NOINLINE void GatherChannel(const B* pixels, ptrdiff_t count, B* channel) {
  ptrdiff_t x = GatherVectors<C>(hn::ScalableTag<B>(), pixels, 0, count, channel);
  x = GatherVectors<C>(hn::Full128<B>(), pixels, x, count, channel);
  const auto* rest = loose(pixels);
  for (; x < count; ++x) channel[x] = rest[3 * x + C];
}

template <class B>
HWY_INLINE const B* OneChannel(const B* pixels, int32_t coi, ptrdiff_t x, ptrdiff_t count, B* gathered) {
  if (coi == 0) return pixels + x;
  const auto gather = coi == 1 ? GatherChannel<0, B> : coi == 2 ? GatherChannel<1, B> : GatherChannel<2, B>;
  gather(pixels + 3 * x, count, gathered);
  return gathered;
}

template <class T>
HWY_INLINE ptrdiff_t LongestStrip(const Sources<T>& s) {
  return s.coi ? kGathered : kDirect;
}

// body(strip) for columns first <= x < end of row y.
template <class T, bool Pair, class Body>
HWY_INLINE void RowStrips(const Sources<T>& s, ptrdiff_t y, ptrdiff_t first, ptrdiff_t end, const Body& body) {
  using B = Bits<T>;
  alignas(HWY_MAX_BYTES) B gatheredA[kGathered], gatheredB[Pair ? kGathered : 1];
  const ptrdiff_t longest = LongestStrip(s);
  for (ptrdiff_t x = first; x < end; x += longest) {
    Strip<T> strip{};
    strip.y = y, strip.x = x, strip.count = HWY_MIN(longest, end - x);
    strip.a = OneChannel((const B*)raw(s.first.row(y)), s.coi, x, strip.count, gatheredA);
    if constexpr (Pair) strip.b = OneChannel((const B*)raw(s.second.row(y)), s.coi, x, strip.count, gatheredB);
    if (s.mask.data) strip.mask = raw(s.mask.row(y)) + x;
    body(strip);
  }
}

template <class T, bool Pair, class Body>
HWY_INLINE void ForEachStrip(const Sources<T>& s, int32_t rows, const Body& body) {
  for (ptrdiff_t y = 0; y < rows; ++y) RowStrips<T, Pair>(s, y, 0, s.width, body);
}

// The lanes of a vector that take part: all, or those of a Highway mask.
struct AllLanes {};
template <class D>
HWY_INLINE hn::VFromD<D> Kept(D, AllLanes, hn::VFromD<D> v) {
  return v;
}
template <class D>
HWY_INLINE hn::VFromD<D> Kept(D, hn::MFromD<D> keep, hn::VFromD<D> v) {
  return hn::IfThenElseZero(keep, v);
}
template <class D>
HWY_INLINE hn::VFromD<D> KeptOr(D, AllLanes, hn::VFromD<D> v, hn::VFromD<D>) {
  return v;
}
template <class D>
HWY_INLINE hn::VFromD<D> KeptOr(D, hn::MFromD<D> keep, hn::VFromD<D> v, hn::VFromD<D> other) {
  return hn::IfThenElse(keep, v, other);
}

// f folded over all lanes, halves first.
template <class D, class F>
HWY_INLINE hn::TFromD<D> Fold(D d, hn::VFromD<D> v, const F& f) {
  if constexpr (hn::MaxLanes(d) == 1) {
    return hn::GetLane(v);
  } else {
    const hn::Half<D> half;
    return Fold(half, f(hn::LowerHalf(half, v), hn::UpperHalf(half, v)), f);
  }
}

// The smaller and the larger lane; of floats the second where neither is (NaN, zeros). SSSE3 compares 16-bit lanes as
// signed numbers only: there 16u are ranked with the sign bit flipped, and stay so until the end.
template <class B>
constexpr bool kFlipped = std::is_same<B, uint16_t>::value&& HWY_MAX_BYTES == 16;
template <class B>
HWY_INLINE hn::VFromD<Tag<B>> Ranked(hn::VFromD<Tag<B>> v) {
  if constexpr (kFlipped<B>) return hn::Xor(v, hn::Set(Tag<B>(), 0x8000));
  else return v;
}
template <class V, class B = hn::TFromV<V>>
HWY_INLINE V Lesser(V a, V b) {
  if constexpr (kFlipped<B>) return V{_mm_min_epi16(a.raw, b.raw)};
  else return hn::Min(a, b);
}
template <class V, class B = hn::TFromV<V>>
HWY_INLINE V Greater(V a, V b) {
  if constexpr (kFlipped<B>) return V{_mm_max_epi16(a.raw, b.raw)};
  else return hn::Max(a, b);
}
// The largest of ranked lanes, and the smallest, as elements again.
template <class B>
HWY_INLINE B GreatestLane(hn::VFromD<Tag<B>> v) {
  const B most = Fold(
      Tag<B>(), v, FEED(auto a, auto b) { return Greater(a, b); });
  if constexpr (kFlipped<B>) return (B)(most ^ 0x8000);
  else return most;
}
template <class B>
HWY_INLINE B LeastLane(hn::VFromD<Tag<B>> v) {
  const B least = Fold(
      Tag<B>(), v, FEED(auto a, auto b) { return Lesser(a, b); });
  if constexpr (kFlipped<B>) return (B)(least ^ 0x8000);
  else return least;
}

// The first `count` elements of a vector, at most all of it; the others are 0. Nothing beyond them is read.
template <class D, class B = hn::TFromD<D>>
HWY_INLINE hn::VFromD<D> LoadRest(D d, const B* p, ptrdiff_t count) {
  constexpr ptrdiff_t lanes = hn::MaxLanes(D());
  if (count >= lanes) return hn::LoadU(d, p);
#if HWY_TARGET <= HWY_AVX3
  return hn::MaskedLoad(hn::FirstN(d, (size_t)count), d, p);
#else
  if constexpr (lanes * sizeof(B) > 16) {
    // By halves: a wide load of what was just stored in pieces would wait for the cache.
    const hn::Half<D> half;
    if (count < lanes / 2) return hn::ZeroExtendVector(d, LoadRest(half, p, count));
    return hn::Combine(d, LoadRest(half, p + lanes / 2, count - lanes / 2), hn::LoadU(half, p));
  } else {
    if (count <= 0) return hn::Zero(d);
    alignas(16) B buffer[16 / sizeof(B)] = {};
    LastVectors<B, (int)lanes / 2>(
        0, count, VECTOR(e, i) { hn::StoreU(hn::LoadU(e, p + i), e, buffer + i); });
    return hn::Load(d, buffer);
  }
#endif
}

// Mask bytes as a mask of the lanes of D.
template <class D>
HWY_INLINE hn::MFromD<D> NonZero(D d, hn::VFromD<hn::Rebind<uint8_t, D>> bytes) {
  if constexpr (sizeof(hn::TFromD<D>) == 1) {
    return hn::Ne(bytes, hn::Zero(d));
  } else {
    const hn::RebindToUnsigned<D> du;
    return hn::RebindMask(d, hn::Ne(hn::PromoteTo(du, bytes), hn::Zero(du)));
  }
}

// add(place, keep, a, b) for each vector of a strip, in steps of Group vectors; `place` numbers them within a step.
template <int K>
struct Place {
  static constexpr int value = K;
};

template <class T, bool Pair, bool Masked, int Group, int K, class Add>
HWY_INLINE void FeedWhole(const Strip<T>& s, ptrdiff_t x, const Add& add) {
  if constexpr (K < Group) {
    const Tag<T> d;
    const hn::Rebind<uint8_t, Tag<T>> bytes;
    const auto a = hn::LoadU(d, s.a + x);
    auto b = a;
    if constexpr (Pair) b = hn::LoadU(d, s.b + x);
    if constexpr (Masked) add(Place<K>(), NonZero(d, hn::LoadU(bytes, s.mask + x)), a, b);
    else add(Place<K>(), AllLanes(), a, b);
    FeedWhole<T, Pair, Masked, Group, K + 1>(s, x + kLanes<T>, add);
  }
}

template <class T, bool Pair, bool Masked, int Group, int K, class Add>
HWY_INLINE void FeedRest(const Strip<T>& s, ptrdiff_t x, const Add& add) {
  if constexpr (K < Group) {
    if (x >= s.count) return;
    const Tag<T> d;
    const hn::Rebind<uint8_t, Tag<T>> bytes;
    const ptrdiff_t rest = HWY_MIN(kLanes<T>, s.count - x);
    auto keep = hn::FirstN(d, (size_t)rest);
    if constexpr (Masked) keep = hn::And(keep, NonZero(d, LoadRest(bytes, s.mask + x, rest)));
    const auto a = LoadRest(d, s.a + x, rest);
    auto b = a;
    if constexpr (Pair) b = LoadRest(d, s.b + x, rest);
    add(Place<K>(), keep, a, b);
    FeedRest<T, Pair, Masked, Group, K + 1>(s, x + kLanes<T>, add);
  }
}

template <class T, bool Pair, bool Masked, int Group = 1, class Add>
HWY_INLINE void Feed(const Strip<T>& s, const Add& add) {
  ptrdiff_t x = 0;
  for (; x + Group * kLanes<T> <= s.count; x += Group * kLanes<T>) FeedWhole<T, Pair, Masked, Group, 0>(s, x, add);
  if (x < s.count) FeedRest<T, Pair, Masked, Group, 0>(s, x, add);
}

KERNELS_END
#endif
