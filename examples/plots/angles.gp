set title "Look and incidence angles of the master, first line"
set xlabel "range sample of the master (samples)"; set ylabel "degrees"; set key top left
set autoscale noextend; set offsets 0, 0, graph 0.05, graph 0.15
plot "early" using 1:4 with linespoints linecolor "#0072b2" title "look angle", \
     "early" using 1:5 with linespoints linecolor "#d55e00" title "incidence angle"
