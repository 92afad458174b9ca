set title "Effective baseline at the nine points, m"
unset key; set xlabel "range: near, middle, far"; set ylabel "line"
unset xtics; set xrange [-0.5:2.5]; set cblabel "m"; set offsets 0, 0, 700, 1500
plot for [c=2:4] "< head -n 3 grids" using (c - 2):1:(column(c)) with points pointtype 7 pointsize 5 linecolor palette, \
     for [c=2:4] "< head -n 3 grids" using (c - 2):1:(sprintf("%.2f", column(c))) with labels offset 0,-2
