/* The Fourier transform of five numbers, called from C. */
#include <stdio.h>
#include <stdlib.h>

char* spectrum_of_text(const char* const* numbers, int n, int digits, char** results);

int main(void) {
  const char* numbers[] = {"0.1", "0.2", "0.3", "0.5", "0.8"};
  char* results[5];
  char* failure = spectrum_of_text(numbers, 5, 40, results);
  if (failure != NULL) {
    fprintf(stderr, "%s\n", failure);
    free(failure);
    return 1;
  }
  for (int k = 0; k < 5; ++k) {
    printf("x[%d] = %s\n", k, results[k]);
    free(results[k]);
  }
  return 0;
}
