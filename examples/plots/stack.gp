set title "Effective baseline over the pairs of a stack"
unset key; set xlabel "pair"; set ylabel "m"; set xzeroaxis
plot "baselines" using 0:1 with points pointtype 7
