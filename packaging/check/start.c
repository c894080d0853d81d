/* Begins a program that is linked without a compiler's own start files. */
#include <stdlib.h>

int __cdecl __getmainargs(int*, char***, char***, int, int*);
int main(int, char**);
int _fltused;

void start(void) {
    int count, mode = 0;
    char **words, **environment;
    __getmainargs(&count, &words, &environment, 0, &mode);
    exit(main(count, words));
}
