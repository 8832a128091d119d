// Closes what core/rename.h opened.
#undef ONE
#undef TWO
#undef SWAP
#undef INTERNAL
