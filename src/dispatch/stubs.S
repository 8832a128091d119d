/* The public entry points: for each name of the manifest a table of two bodies and a stub that jumps through it.
   A stub is two loads and a jump; it changes no register but rax and r11, so arguments of every kind pass untouched. */
#include <cet.h> /* _CET_ENDBR, empty without -fcf-protection */

        .macro  entry name, body0, body1
        .section .data.rel.ro.\name\()_arraddr, "aw", @progbits
        .balign 16
        .globl  \name\()_arraddr
        .hidden \name\()_arraddr, \body0, \body1
        .type   \name\()_arraddr, @object
        .size   \name\()_arraddr, 16
\name\()_arraddr:
        .quad   \body0, \body1

        .section .text.\name, "ax", @progbits
        .balign 32
        .globl  \name
        .type   \name, @function
\name:
        .cfi_startproc
        _CET_ENDBR
        movslq  orvJumpIndexForMergedDLL(%rip), %rax
        leaq    \name\()_arraddr(%rip), %r11
        jmp     *(%r11,%rax,8)
        .cfi_endproc
        .size   \name, . - \name
        .endm

        .hidden orvJumpIndexForMergedDLL

#define ONE(name)  entry name, u8_##name, u8_##name
#define TWO(name)  entry name, u8_##name, n8_##name
#define SWAP(name) entry name, n8_##name, u8_##name
#define INTERNAL(name)
#include "dispatch/manifest.def"

        .section .note.GNU-stack, "", @progbits
