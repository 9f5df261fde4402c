/* Returns 42: proof that this build's programs really run. */
int main(void) { return 42; }
