set title "Flat-earth phase over range"
set xlabel "range sample of the master"; set ylabel "cycles"; set key top left
plot "early" using 1:2 with linespoints title "first line", "late" using 1:2 with linespoints title "last line"
