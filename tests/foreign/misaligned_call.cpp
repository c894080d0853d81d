#include "misaligned_call.h"

// ebx keeps the stack as it was, esi where the arguments begin: the function called preserves both.
asm(R"(
    .globl _CallMisaligned
_CallMisaligned:
    pushl %ebp
    movl  %esp, %ebp
    pushl %ebx
    pushl %esi
    pushl %edi
    movl  %esp, %ebx
    movl  16(%ebp), %ecx
    leal  32(, %ecx, 4), %eax
    subl  %eax, %esp
    andl  $-16, %esp
    addl  20(%ebp), %esp
    movl  12(%ebp), %esi
    movl  %esp, %edi
    cld
    rep movsl
    movl  %esp, %esi
    call  *8(%ebp)
    movl  %esp, %ecx
    subl  %esi, %ecx
    movl  %ebx, %esp
    movl  24(%ebp), %edi
    movl  %eax, (%edi)
    movl  %edx, 4(%edi)
    movl  %ecx, 8(%edi)
    popl  %edi
    popl  %esi
    popl  %ebx
    popl  %ebp
    ret
)");
