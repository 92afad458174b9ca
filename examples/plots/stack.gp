set title "Effective baseline over the slaves' dates"
unset key; set ylabel "m"; set xzeroaxis
set xdata time; set timefmt "%Y-%m-%d"; set format x "%b %Y"; set xtics rotate by -30; set rmargin 6
plot "baselines" using 1:2 with points pointtype 7
