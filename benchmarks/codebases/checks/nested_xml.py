"""Prints an XML document of 900 nested elements, with entities and CDATA."""

DEPTH = 900
print('<?xml version="1.0"?>\n<!DOCTYPE n [\n'
      "<!ELEMENT n ((n, (t | (n?, (t, n)*))+)* | t)>\n"
      '<!ENTITY a "text"><!ENTITY b "&a;&a;">'
      '<!ENTITY c "&b;<t/>&b;">\n]>')
for level in range(DEPTH):
    print(f'<n k="{level}&#38;&b;">&c;<![CDATA[<{level * level}>]]>')
for level in range(DEPTH):
    print(f"</n><!-- {level} -->", end="\n" if level < DEPTH - 1 else "")
