// Opens a list of names: each is renamed in the object file. No include guard: read before every list.
#define ONE(name) ORV_RENAME(name)
#define TWO(name) ORV_RENAME(name)
#define SWAP(name) ORV_RENAME(name)
#define INTERNAL(name) ORV_RENAME(name)
