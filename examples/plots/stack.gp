set title "Effective baseline over the slaves' dates"
unset key; set ylabel "effective baseline (m)"; set xlabel "date of the slave"; set xzeroaxis
set xdata time; set timefmt "%Y-%m-%d"; set format x "%Y-%m"; set rmargin 6; unset mxtics
set autoscale noextend; set offsets graph 0.03, graph 0.03, graph 0.05, graph 0.05
plot "baselines" using 1:2 with points pointtype 7 linecolor "#0072b2"
