set title "Look and incidence angles of the master, first line"
set xlabel "range sample of the master"; set ylabel "degrees"; set key top left
plot "early" using 1:4 with linespoints title "look angle", "early" using 1:5 with linespoints title "incidence angle"
