set multiplot layout 2,1 title "Metres per cycle over range"
unset key; set autoscale noextend; set offsets 0, 0, graph 0.08, graph 0.08; set lmargin 11
set format x ""; set bmargin 1; set ylabel "first line (m)"
plot "early" using 1:3 with linespoints linecolor "#0072b2"
set format x "%.0f"; set bmargin 3.5; set tmargin 1
set xlabel "range sample of the master (samples)"; set ylabel "last - first line (m)"
stats "< paste early late" using ($10 - $3) nooutput
set format y "%.2f"; set ytics STATS_min, (STATS_max > STATS_min ? (STATS_max - STATS_min) / 3 : 1), STATS_max
plot "< paste early late" using 1:($10 - $3) with linespoints linecolor "#d55e00"
